#include "app/characters/snake/SnakeBoardPainter.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <random>

namespace DeskSprites {
namespace {

using FellowCore::Rect;
using FellowCore::SnakeCell;
using FellowCore::SnakeGame;
using FellowCore::SnakeStatus;
using Motion = SnakeBoardPainter::Motion;

Platform::ScreenInfo screenOf(const Rect& frame, const Rect& visible, double scale) {
    return {"test", frame, visible, scale, true};
}

TEST(SnakePlaceTest, EverythingStandsOnTheScreenAndBesideEachOther) {
    constexpr struct {
        const char* fault;
        Rect frame;
        Rect visible;
        double scale;
        bool fits;
    } cases[] = {
        {"an ordinary screen", {0, 0, 1600, 1000}, {0, 0, 1600, 1000}, 1, true},
        {"a screen elsewhere", {-1280, 300, 1280, 800}, {-1280, 300, 1280, 800}, 1, true},
        {"a bar at the top", {0, 0, 1600, 1000}, {0, 0, 1600, 960}, 1, true},
        {"two pixels in a point", {0, 0, 1440, 900}, {0, 0, 1440, 875}, 2, true},
        {"pixels that share points", {0, 0, 1536, 864}, {0, 0, 1536, 824}, 1.25, true},
        {"a very large screen", {0, 0, 7680, 4320}, {0, 0, 7680, 4320}, 1, true},
        {"upright", {0, 0, 800, 1280}, {0, 0, 800, 1280}, 1, true},
        {"just room for eight by eight", {0, 0, 176, 232}, {0, 0, 176, 232}, 1, true},
        {"not quite room", {0, 0, 176, 231}, {0, 0, 176, 231}, 1, false},
    };
    for (const auto& each : cases) {
        const SnakePlace place(screenOf(each.frame, each.visible, each.scale));
        EXPECT_EQ(place.fitsGame(), each.fits) << each.fault;
        if (!each.fits) {
            continue;
        }
        const QRect board = place.boardPixels();
        const int top = place.cellPixels({0, place.rows() - 1}).top();
        EXPECT_EQ(QRect(place.cellPixels({0, 0}).bottomLeft().x(), top, board.width(), board.height()), board)
            << each.fault;
        EXPECT_EQ(place.cellPixels({place.columns() - 1, 0}).bottomRight(), board.bottomRight())
            << each.fault;
        const QRect screen(0, 0, static_cast<int>(each.frame.width), static_cast<int>(each.frame.height));
        const QRect frame = place.inPoints(place.framePixels());
        const int bar = static_cast<int>(each.frame.maxY() - each.visible.maxY());
        for (const QRect& strip : {place.header(), place.footer(), frame}) {
            EXPECT_TRUE(screen.adjusted(0, bar, 0, 0).contains(strip)) << each.fault;
        }
        EXPECT_FALSE(place.header().intersects(frame) || place.footer().intersects(frame)) << each.fault;
        EXPECT_GE(std::min(place.header().height(), place.footer().height()), 32) << each.fault;
    }
}

/// Which pixels of one edge of a tile are drawn, from its upper or left end.
std::string edge(const QImage& tile, SnakeCell towards) {
    std::string drawn;
    for (int i = 0; i < 8; ++i) {
        const int x = towards.x == 0 ? i : towards.x > 0 ? 7 : 0;
        const int y = towards.y == 0 ? i : towards.y > 0 ? 0 : 7;
        drawn += qAlpha(tile.pixel(x, y)) > 0 ? '#' : '.';
    }
    return drawn;
}

/// A game that turns as it likes but keeps away from walls and itself while it can.
class Wandering {
public:
    explicit Wandering(unsigned seed, int columns = 12, int rows = 9) : random_(seed) {
        game.emplace(columns, rows, choose());
    }

    bool step() {
        std::vector<FellowCore::SnakeDirection> open;
        for (const auto direction : FellowCore::allSnakeDirections) {
            const SnakeCell next = game->body().front() + FellowCore::offset(direction);
            if (game->freeCells().contains(next)) {
                open.push_back(direction);
            }
        }
        if (!open.empty()) {
            game->turn(open[random_() % open.size()]);
        }
        return game->step(choose()) != FellowCore::SnakeStep::none && game->status() == SnakeStatus::running;
    }
    FellowCore::ChooseSnakeFood choose() {
        return [this](const FellowCore::SnakeFreeCells& free) {
            return free[static_cast<int>(random_() % static_cast<unsigned>(free.size()))];
        };
    }

    std::optional<SnakeGame> game;

private:
    std::mt19937 random_;
};

TEST(SnakeTileTest, SegmentsJoinWhicheverWayTheSnakeTurns) {
    int joints = 0;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        for (Wandering snake(seed); snake.step();) {
            const auto& body = snake.game->body();
            for (std::size_t i = 1; i < body.size(); ++i, ++joints) {
                const SnakeCell ahead{body[i - 1].x - body[i].x, body[i - 1].y - body[i].y};
                const QImage one = SnakeTile::segment(*snake.game, i, SnakeLook::awake);
                const QImage next = SnakeTile::segment(*snake.game, i - 1, SnakeLook::awake);
                ASSERT_EQ(edge(one, ahead), edge(next, {-ahead.x, -ahead.y})) << "segment " << i;
                ASSERT_EQ(edge(one, ahead), ".######.") << "segment " << i;
            }
        }
    }
    EXPECT_GT(joints, 2000);
}

bool isStraight(const SnakeGame& game, std::size_t index) {
    const auto& body = game.body();
    return index > 0 && index + 1 < body.size() &&
           (body[index - 1].x == body[index + 1].x || body[index - 1].y == body[index + 1].y);
}

/// How bright one half of a tile is, parted from the lower left to the upper right corner.
int brightness(const QImage& tile, bool upperLeft) {
    int sum = 0;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            const bool isInHalf = upperLeft ? x + y < 7 : x + y > 7;
            sum += isInHalf ? qGreen(tile.pixel(x, y)) : 0;
        }
    }
    return sum;
}

TEST(SnakeTileTest, LightComesFromTheUpperLeftWhicheverWayShePoints) {
    int compared = 0;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        for (Wandering snake(seed); snake.step();) {
            for (std::size_t i = 0; i < snake.game->body().size(); ++i) {
                // Only what is alike on both sides can be compared.
                if (isStraight(*snake.game, i)) {
                    const QImage tile = SnakeTile::segment(*snake.game, i, SnakeLook::awake);
                    ASSERT_GT(brightness(tile, true), brightness(tile, false) + 50);
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 100);
}

class SnakeBoardPainterTest : public testing::TestWithParam<Motion> {};
INSTANTIATE_TEST_SUITE_P(Motions, SnakeBoardPainterTest, testing::Values(Motion::full, Motion::reduced));

TEST_P(SnakeBoardPainterTest, PaintingWhatChangedComesToTheSameAsPaintingEverything) {
    const SnakePlace place(screenOf({0, 0, 240, 248}, {0, 0, 240, 248}, 1));
    SnakeBoardPainter painter(place);
    painter.setMotion(GetParam());
    const QRect all(0, 0, 240, 248);
    const auto paintOn = [&](QImage& image, const QRegion& part, const SnakeGame& game, int beat) {
        QPainter on(&image);
        on.setClipRegion(part);
        on.setCompositionMode(QPainter::CompositionMode_Source);
        on.fillRect(all, Qt::transparent);
        on.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.paint(on, part, game, beat);
    };
    double repainted = 0;
    int steps = 0;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        Wandering snake(seed, place.columns(), place.rows());
        QImage kept(all.size(), QImage::Format_ARGB32_Premultiplied);
        int beat = 0;
        paintOn(kept, all, *snake.game, beat);
        for (SnakeMarks before(*snake.game, beat); snake.step(); ++steps) {
            const SnakeMarks now(*snake.game, ++beat);
            const QRegion changed = painter.changed(before, now);
            before = now;
            paintOn(kept, changed, *snake.game, beat);
            QImage fresh(all.size(), QImage::Format_ARGB32_Premultiplied);
            paintOn(fresh, all, *snake.game, beat);
            ASSERT_EQ(kept, fresh) << "seed " << seed << ", step " << beat;
            for (const QRect& rect : changed) {
                repainted += rect.width() * rect.height();
            }
        }
    }
    EXPECT_GT(steps, 200);
    const double cells = repainted / steps / place.tilePixels() / place.tilePixels();
    EXPECT_LT(cells, GetParam() == Motion::full ? 16 : 5) << "a step paints more than its ends and its food";
}

} // namespace
} // namespace DeskSprites
