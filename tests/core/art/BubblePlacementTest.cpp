#include "core/art/BubblePlacement.h"
#include "core/art/CharacterActionsLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace FellowCore {
namespace {

constexpr Rect screen{0, 0, 1000, 800};

// "left 292,240 pointer 60", "right ..." by where the bubble stands; "closed" when it may not open.
std::string described(const BubblePlacement& placement) {
    const auto whole = [](double value) { return std::to_string(std::lround(value)); };
    return std::string(placement.pointerOnLeft ? "right " : "left ") + whole(placement.frame.x) + "," +
           whole(placement.frame.y) + " pointer " + whole(placement.pointerY) +
           (placement.canPresent ? "" : " closed");
}

TEST(BubblePlacement, TakesTheSideWithRoom) {
    const struct {
        const char* fault;
        Rect artwork;
        double faceY;
        double width;
        std::optional<double> reserveWidth;
        const char* expected;
    } cases[] = {
        {"left comes first", {500, 100, 100, 200}, 300, 200, {}, "left 290,240 pointer 60"},
        {"exactly room on the left", {218, 100, 100, 200}, 300, 200, {}, "left 8,240 pointer 60"},
        {"a point too little on the left", {217, 100, 100, 200}, 300, 200, {}, "right 327,240 pointer 60"},
        {"at the screen's left edge", {0, 100, 100, 200}, 300, 200, {}, "right 110,240 pointer 60"},
        {"too wide for both, more room right",
         {400, 100, 100, 200},
         300,
         700,
         {},
         "right 292,240 pointer 60"},
        {"too wide for both, more room left", {500, 100, 100, 200}, 300, 700, {}, "left 8,240 pointer 60"},
        {"too wide for both, equal room", {450, 100, 100, 200}, 300, 700, {}, "left 8,240 pointer 60"},
        {"room is kept for a bubble that will grow",
         {300, 100, 100, 200},
         300,
         200,
         400, //
         "right 410,240 pointer 60"},
        {"a narrower reserve changes nothing", {300, 100, 100, 200}, 300, 200, 50, "left 90,240 pointer 60"},
        {"a face near the bottom lifts the bubble", {500, 0, 100, 60}, 40, 200, {}, "left 290,8 pointer 32"},
        {"a face near the top lowers it", {500, 600, 100, 200}, 790, 200, {}, "left 290,692 pointer 98"},
        {"fractions round to whole points",
         {500.5, 100, 100, 200},
         300.4,
         200,
         {},
         "left 291,240 pointer 60"},
        {"a face that is no number is the art's middle",
         {500, 100, 100, 200},
         std::nan(""),
         200,
         {},
         "left 290,140 pointer 60"},
    };
    for (const auto& each : cases) {
        const auto placed = BubblePlacement::resolve(each.artwork, each.faceY, screen, {each.width, 100}, 60,
                                                     each.reserveWidth, 10, {});
        EXPECT_EQ(described(placed), each.expected) << each.fault;
    }
}

TEST(BubblePlacement, FindsTheNearestClearPlace) {
    const Rect artwork{450, 0, 100, 200};
    const Rect left{200, 0, 240, 220};
    const Rect right{560, 0, 240, 220};
    const Rect overhead{0, 210, 1000, 590};
    const Rect nowhere{-5000, -5000, 100, 100};
    const struct {
        const char* fault;
        std::vector<Rect> avoiding;
        const char* expected;
    } cases[] = {
        {"an obstacle out of the way leaves the bubble", {nowhere}, "left 240,60 pointer 60"},
        {"a neighbour on the left lifts it over him", {left}, "left 240,230 pointer 8"},
        {"between two neighbours it goes above both", {left, right}, "left 240,230 pointer 8"},
        {"with a lid on, it goes beyond the neighbour",
         {left, {0, 230, 1000, 570}},
         "right 560,60 pointer 60"},
        {"with no free place it stays closed where it was wanted", //
         {left, right, overhead, {0, 0, 200, 220}, {800, 0, 200, 220}},
         "left 240,60 pointer 60 closed"},
        {"pushed down, the pointer keeps off the corner", {{200, 120, 240, 300}}, "left 240,10 pointer 92"},
        {"centred over the art it points left", //
         {{0, 0, 390, 800}, {560, 0, 440, 200}},
         "right 400,210 pointer 8"},
        {"obstacles without area or number are none",
         {{240, 60, 0, 50}, {std::nan(""), 0, 5, 5}}, //
         "left 240,60 pointer 60"},
    };
    for (const auto& each : cases) {
        const auto placed =
            BubblePlacement::resolve(artwork, 120, screen, {200, 100}, 60, std::nullopt, 10, each.avoiding);
        EXPECT_EQ(described(placed), each.expected) << each.fault;
    }
}

TEST(BubblePlacement, PrefersTheFirstOfEquallyNearPlaces) {
    // The wanted place lies in the middle of a square: left, right, below and above are equally far.
    const Rect obstacle{400, 400, 100, 100};
    EXPECT_EQ(BubblePlacement::clearFrame({425, 425, 50, 50}, {0, 0, 900, 900}, {&obstacle, 1}, 5),
              (Rect{425, 345, 50, 50}));
    const Rect everything{0, 0, 900, 900};
    EXPECT_EQ(BubblePlacement::clearFrame({425, 425, 50, 50}, everything, {&everything, 1}, 5),
              (Rect{425, 425, 50, 50}))
        << "with no place the wanted one is returned";
}

TEST(BubblePlacement, FitsFlushAgainstAFraction) {
    // 487.8 - 88.1 + 88.1 is more than 487.8 in doubles.
    const Rect obstacle{487.8, 0, 400, 200};
    EXPECT_EQ(BubblePlacement::clearFrame({450, 100, 88.1, 50}, {0, 0, 900, 200}, {&obstacle, 1}, 0),
              (Rect{487.8 - 88.1, 100, 88.1, 50}));
}

TEST(BubblePlacement, NeverCoversAnythingWhenItOpens) {
    std::mt19937 random(1);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const Rect visible{-300.25, 17.5, 1111.3, 777.7};
    const Rect area = visible.inset(8, 8);
    int opened = 0;
    int closed = 0;
    for (int round = 0; round < 3000; ++round) {
        const auto somewhere = [&](double largest) {
            return Rect{between(-350, 800), between(0, 750), between(1, largest), between(1, largest)};
        };
        const Rect artwork = somewhere(500);
        const std::vector<Rect> avoiding{somewhere(600), somewhere(600), somewhere(600)};
        const Size size{between(20, 500), between(20, 400)};
        const auto placed = BubblePlacement::resolve(artwork, artwork.midY(), visible, size, size.height / 2,
                                                     std::nullopt, between(0, 20), avoiding);
        EXPECT_EQ(placed.frame.size(), size);
        (placed.canPresent ? opened : closed)++;
        for (const Rect& covered : {artwork, avoiding[0], avoiding[1], avoiding[2]}) {
            EXPECT_TRUE(!placed.canPresent || placed.frame.sharedArea(covered) < 0.01);
        }
        EXPECT_TRUE(!placed.canPresent || area.inset(-0.001, -0.001).contains(placed.frame));
    }
    EXPECT_GT(opened, 500);
    EXPECT_GT(closed, 50);
}

TEST(CharacterActionsLayout, PointsWithTheMiddleOfItsSide) {
    const Rect artwork{500, 100, 100, 200};
    EXPECT_EQ(described(CharacterActionsLayout::resolve(artwork, 300, screen, {200, 120}, {})),
              "left 292,240 pointer 60");
    const Rect left{280, 100, 210, 300};
    EXPECT_EQ(described(CharacterActionsLayout::resolve(artwork, 300, screen, {200, 120}, {&left, 1})),
              "left 292,408 pointer 8");
}

} // namespace
} // namespace FellowCore
