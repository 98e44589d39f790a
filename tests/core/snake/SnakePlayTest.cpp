#include "core/snake/SnakeBoardLayout.h"
#include "core/snake/SnakeCommand.h"
#include "core/snake/SnakePace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace FellowCore {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double huge = std::numeric_limits<double>::max();
const double nan = std::numeric_limits<double>::quiet_NaN();

TEST(SnakeBoardLayout, StandsOnWholePixels) {
    const struct {
        const char* fault;
        Size size;
        double unit, scale;
        double tile;
        int columns, rows;
        Point origin;
    } cases[] = {
        {"plain", {1920, 1080}, 2, 1, 16, 120, 67, {0, 4}},
        {"a remainder is centred, on a pixel", {1923, 1085}, 2, 1, 16, 120, 67, {1, 6}},
        {"half a point is a pixel at scale 2", {1923, 1085}, 2, 2, 16, 120, 67, {1.5, 6.5}},
        {"the unit snaps to pixels, halves up", {1000, 1000}, 1.25, 2, 12, 83, 83, {2, 2}},
        {"a fractional scale loses no column to rounding", {1760, 1056}, 8.8, 1.25, 70.4, 25, 15, {0, 0}},
        {"nor does a third", {1280, 1280}, 3.3, 1.5, 80.0 / 3, 48, 48, {0, 0}},
        {"a unit is never less than a pixel", {800, 800}, 0, 2, 4, 200, 200, {0, 0}},
        {"a bad unit is 2 at any scale", {160, 160}, -1, 2, 16, 10, 10, {0, 0}},
        {"a bad scale is 1", {160, 160}, 2, 0.5, 16, 10, 10, {0, 0}},
        {"no number for a scale is 1", {160, 160}, 2, infinite, 16, 10, 10, {0, 0}},
        {"a side that is no number is empty", {nan, 160}, 2, 1, 16, 0, 10, {0, 0}},
        {"so is a negative one", {160, -5}, 2, 1, 16, 10, 0, {0, 0}},
        {"a window smaller than a tile", {15, 7}, 2, 1, 16, 0, 0, {7, 3}},
        {"the largest board is centred", {40000, 16}, 2, 1, 16, 2048, 1, {3616, 0}},
    };
    for (const auto& each : cases) {
        const SnakeBoardLayout layout(each.size, each.unit, each.scale);
        EXPECT_DOUBLE_EQ(layout.tile, each.tile) << each.fault;
        EXPECT_EQ(std::pair(layout.columns, layout.rows), std::pair(each.columns, each.rows)) << each.fault;
        EXPECT_EQ(layout.frame.origin(), each.origin) << each.fault;
        const Rect beyond = layout.rect({layout.columns, layout.rows});
        EXPECT_DOUBLE_EQ(beyond.minX(), layout.frame.maxX()) << each.fault;
        EXPECT_DOUBLE_EQ(beyond.minY(), layout.frame.maxY()) << each.fault;
    }
    EXPECT_TRUE(SnakeBoardLayout({128, 143}, 2, 1).fitsGame());
    EXPECT_FALSE(SnakeBoardLayout({128, 127}, 2, 1).fitsGame());
}

TEST(SnakeBoardLayout, NeverLeavesTheNumbers) {
    for (const double side : {0.0, 1.0, huge, infinite, nan, -huge}) {
        for (const double unit : {0.0, 1e-300, 2.0, huge / 100, huge, infinite, nan}) {
            for (const double scale : {1.0, 3.0, huge, infinite, nan}) {
                const SnakeBoardLayout layout({side, side}, unit, scale);
                EXPECT_TRUE(layout.frame.isFinite()) << side << " " << unit << " " << scale;
                EXPECT_TRUE(std::isfinite(layout.tile) && layout.tile > 0)
                    << side << " " << unit << " " << scale;
                EXPECT_TRUE(layout.columns >= 0 && layout.columns <= 2048);
            }
        }
    }
}

TEST(SnakeBoardLayout, CoversTheScreenBelowTheMenuBar) {
    const Rect screen{-1920, 100, 1920, 1080};
    const struct {
        const char* fault;
        Rect visible;
        Rect frame;
    } cases[] = {
        {"a bar at the top stays free", {-1920, 100, 1920, 1050}, {-1920, 100, 1920, 1050}},
        {"docks are covered", {-1850, 160, 1700, 990}, {-1920, 100, 1920, 1050}},
        {"what reaches beyond the screen is cut", {-1920, 100, 1920, 9000}, screen},
        {"another screen's area says nothing", {0, 0, 1920, 1080}, screen},
        {"no number says nothing", {-1920, 100, nan, 1080}, screen},
        {"an empty area says nothing", {}, screen},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(SnakeBoardLayout::overlayFrame(screen, each.visible), each.frame) << each.fault;
    }
}

using Kind = SnakeCommand::Kind;

TEST(SnakeCommand, GivesEachKeyItsMeaningInTime) {
    constexpr auto running = SnakeStatus::running;
    constexpr auto paused = SnakeStatus::paused;
    constexpr auto over = SnakeStatus::gameOver;
    constexpr auto won = SnakeStatus::won;
    const struct {
        const char* fault;
        SnakeKeyPress press;
        SnakeStatus status;
        std::optional<Kind> kind;
    } cases[] = {
        {"a turn in a pause would surprise on resuming", {SnakeKey::up}, paused, std::nullopt},
        {"a held key queues no turns", {SnakeKey::left, true}, running, std::nullopt},
        {"a held space does not flicker", {SnakeKey::space, true}, running, std::nullopt},
        {"a held Return starts one game", {SnakeKey::enter, true}, over, std::nullopt},
        {"a held plus goes on", {SnakeKey::plus, true}, running, Kind::faster},
        {"a shortcut is someone else's", {SnakeKey::w, false, true}, running, std::nullopt},
        {"space pauses", {SnakeKey::space}, running, Kind::togglePause},
        {"space resumes", {SnakeKey::space}, paused, Kind::togglePause},
        {"space revives nobody", {SnakeKey::space}, over, std::nullopt},
        {"Return does not throw a game away", {SnakeKey::enter}, running, std::nullopt},
        {"Return plays again", {SnakeKey::enter}, over, Kind::restart},
        {"Escape always leaves", {SnakeKey::escape}, won, Kind::leave},
        {"minus slows, even in a pause", {SnakeKey::minus}, paused, Kind::slower},
    };
    for (const auto& each : cases) {
        const auto command = snakeCommand(each.press, each.status);
        EXPECT_EQ(command ? std::optional(command->kind) : std::nullopt, each.kind) << each.fault;
    }
    for (const auto& [key, direction] : {std::pair(SnakeKey::up, SnakeDirection::up),
                                         {SnakeKey::w, SnakeDirection::up},
                                         {SnakeKey::down, SnakeDirection::down},
                                         {SnakeKey::s, SnakeDirection::down},
                                         {SnakeKey::left, SnakeDirection::left},
                                         {SnakeKey::a, SnakeDirection::left},
                                         {SnakeKey::right, SnakeDirection::right},
                                         {SnakeKey::d, SnakeDirection::right}}) {
        EXPECT_EQ(snakeCommand({key}, running), (SnakeCommand{Kind::turn, direction}));
    }
}

/// When the steps of a game at an interval of 100 ms come, when each timer fires so many ms after it was due.
std::vector<long> stepTimes(const std::vector<int>& lateness) {
    SnakePace pace;
    MonotonicInstant now{50};
    Seconds wait = pace.begin(now, 0.1);
    std::vector<long> times;
    for (const int late : lateness) {
        now = now + wait + late / 1000.0;
        times.push_back(std::lround((now.sinceOrigin - 50) * 1000));
        wait = pace.stepped(now, 0.1);
    }
    return times;
}

TEST(SnakePace, KeepsTimeWithoutBursts) {
    const struct {
        const char* fault;
        std::vector<int> lateness;
        std::vector<long> times;
    } cases[] = {
        {"a little lateness does not add up", {9, 9, 9, 9, 0}, {109, 209, 309, 409, 500}},
        {"nor does earliness, as coarse timers have it", {-5, -5, -5}, {95, 195, 295}},
        {"a very late step is followed by a whole interval", {0, 350, 0, 0}, {100, 550, 650, 750}},
        {"a step that is half an interval late too", {60, 0, 0}, {160, 260, 360}},
        {"load on every step slows down and never bunches", {200, 200, 200}, {300, 600, 900}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(stepTimes(each.lateness), each.times) << each.fault;
    }
}

} // namespace
} // namespace FellowCore
