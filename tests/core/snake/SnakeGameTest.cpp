#include "core/snake/SnakeGame.h"

#include "tests/core/snake/SlowSnake.h"
#include "tests/core/snake/SnakeScript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace FellowCore {
namespace {

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

TEST(SnakeGame, FollowsItsRules) {
    constexpr struct {
        const char* fault;
        const char* script;
        const char* end;
    } cases[] = {
        {"goes straight on", "..", "mm running 6,4 right 0 0"},
        {"the last column is on the board", "...", "mmm running 7,4 right 0 0"},
        {"and the next is not", "....", "mmmW over 7,4 right 0 0"},
        {"the bottom row is on the board", "down .....", "mmmmW over 4,0 down 0 0"},
        {"eating grows by one and counts one", "food=5,4 .", "e running 5,4 right 1 0"},
        {"reversing is refused", "left .", "xm running 5,4 right 0 0"},
        {"so is the same direction, which would fill the queue", "right .", "xm running 5,4 right 0 0"},
        {"two quick presses make a U-turn in two steps", "up left ..", "mm running 3,5 left 0 0"},
        {"the second is held against the first, not the snake", "up down", "x running 4,4 right 0 1"},
        {"a third press is dropped", "up left down", "x running 4,4 right 0 2"},
        {"and there is room again after a step", "up left . down ..", "mmm running 3,4 down 0 0"},
        {"the cell that the tail leaves may be entered", "up . left . down .", "mmm running 3,4 down 0 0"},
        {"no other may", "food=5,4 . up . left . down .", "emmS over 4,5 down 1 0"},
        {"a tail that stays after a meal is the body's", "food=4,5 up . left . down .",
         "emS over 3,5 down 1 0"},
        {"a turn that waits at the end is forgotten", "up ... right . up left .", "mmmmW over 5,7 up 0 0"},
        {"nothing moves after the end", "..... up pause . resume", "mmmW-xx-x over 7,4 right 0 0"},
        {"nothing moves or turns in a pause", "pause . up resume .", "-xm running 5,4 right 0 0"},
        {"a queued turn survives a pause", "up toggle toggle .", "m running 4,5 up 0 0"},
        {"food on the body goes to the first free cell", "food=3,4 down .... left ....",
         "mmmmmmme running 0,0 left 1 0"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(SnakeScript().run(each.script), each.end) << each.fault << ": " << each.script;
    }
}

TEST(SnakeGame, ForcesTheBoardIntoItsBounds) {
    constexpr struct {
        int columns, rows, wide, high;
    } cases[] = {
        {5, 5, 8, 8}, {5000, 9, 2048, 9}, {12, 2049, 12, 2048}, {0, -1, 8, 8}, {lowest, highest, 8, 2048}};
    for (const auto& each : cases) {
        const SnakeGame game(each.columns, each.rows, foodAt(0, 0));
        EXPECT_EQ(game.columns(), each.wide);
        EXPECT_EQ(game.rows(), each.high);
        EXPECT_EQ(game.body().front(), (SnakeCell{each.wide / 2, each.high / 2}));
        EXPECT_EQ(game.body().back(), (SnakeCell{each.wide / 2 - 3, each.high / 2}));
        EXPECT_EQ(game.freeCells().size(), each.wide * each.high - 4);
    }
}

TEST(SnakeGame, IsWonByFillingTheBoard) {
    for (const auto& [columns, rows] :
         {std::pair(8, 8), std::pair(9, 12), std::pair(64, 8), std::pair(65, 8)}) {
        std::mt19937 random(7);
        const ChooseSnakeFood anywhere = [&random](const SnakeFreeCells& free) {
            return free[std::uniform_int_distribution(0, free.size() - 1)(random)];
        };
        SnakeGame game(columns, rows, anywhere);
        SnakeStep last = SnakeStep::moved;
        while (last == SnakeStep::moved || last == SnakeStep::ate) {
            game.turn(alongCircuit(game.body().front(), columns, rows));
            last = game.step(anywhere);
        }
        EXPECT_EQ(last, SnakeStep::filledBoard) << columns;
        EXPECT_EQ(game.status(), SnakeStatus::won);
        EXPECT_EQ(game.food(), std::nullopt);
        EXPECT_TRUE(game.turns().empty());
        EXPECT_EQ(game.score(), columns * rows - 4);
        EXPECT_EQ(game.step(anywhere), SnakeStep::none);
    }
}

/// A player who mostly goes for the food and keeps clear of what kills, so that games get long, and sometimes
/// does not, so that they end.
class RandomPlayer {
public:
    explicit RandomPlayer(unsigned seed) : random_(seed) {}

    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }

    SnakeDirection any() { return allSnakeDirections.at(static_cast<std::size_t>(below(4))); }

    SnakeDirection chosen(const SlowSnake& game) {
        const auto cost = [this, &game](SnakeDirection direction) {
            const SnakeCell next = game.body.front() + offset(direction);
            const int way = std::abs(next.x - game.food->x) + std::abs(next.y - game.food->y);
            return way + (game.isSafe(next) ? 0 : 1000) + below(3);
        };
        return below(40) == 0 ? any() : std::ranges::min(allSnakeDirections, {}, cost);
    }

    /// Near the head, so that it is found soon; often taken, sometimes beyond the edge.
    SnakeCell wish(const SlowSnake& game) {
        return game.body.front() + SnakeCell{below(5) - 2, below(5) - 2};
    }

private:
    std::mt19937 random_;
};

void expectSame(const SnakeGame& quick, const SlowSnake& slow) {
    ASSERT_TRUE(std::ranges::equal(quick.body(), slow.body));
    ASSERT_EQ(quick.direction(), slow.direction);
    ASSERT_EQ(quick.food(), slow.food);
    ASSERT_EQ(quick.score(), slow.score);
    ASSERT_EQ(quick.status(), slow.status);
    ASSERT_EQ(quick.turns(), slow.turns);
    const std::vector<SnakeCell> free = slow.freeCells();
    ASSERT_EQ(quick.freeCells().size(), static_cast<int>(free.size()));
    for (int index = 0; index < quick.freeCells().size(); ++index) {
        ASSERT_EQ(quick.freeCells()[index], free[static_cast<std::size_t>(index)]) << index;
    }
}

TEST(SnakeGame, PlaysLikeTheObviousOne) {
    std::map<SnakeStep, int> seen;
    for (unsigned seed = 0; seed < 60; ++seed) {
        RandomPlayer player(seed);
        SlowSnake slow(8 + player.below(6), 8 + player.below(6), {1, 1});
        SnakeGame quick(slow.columns, slow.rows, foodAt(1, 1));
        while (slow.status == SnakeStatus::running) {
            for (const SnakeDirection pressed : {player.chosen(slow), player.any(), player.any()}) {
                quick.turn(pressed);
                slow.turn(pressed);
                if (player.below(20) != 0) {
                    break;
                }
            }
            const SnakeCell wish = player.wish(slow);
            if (player.below(10) == 0) {
                quick.placeFood(foodAt(wish.x, wish.y));
                slow.place(wish);
            }
            const SnakeStep done = quick.step(foodAt(wish.x, wish.y));
            ASSERT_EQ(done, slow.step(wish)) << "seed " << seed << " score " << slow.score;
            ASSERT_NO_FATAL_FAILURE(expectSame(quick, slow)) << "seed " << seed << " score " << slow.score;
            ++seen[done];
        }
    }
    EXPECT_GT(seen[SnakeStep::ate], 300) << "the games must be worth comparing";
    EXPECT_GT(seen[SnakeStep::wallCollision], 5);
    EXPECT_GT(seen[SnakeStep::selfCollision], 5);
}

TEST(SnakeFreeCells, FindsEveryEntryOnTheLargestBoard) {
    SnakeFreeCells free(2048, 2048);
    std::mt19937 random(11);
    for (int taken = 0; taken < 20000; ++taken) {
        free.take({static_cast<int>(random() % 2048), static_cast<int>(random() % 100)});
        free.release({static_cast<int>(random() % 2048), static_cast<int>(random() % 120)});
        free.take({taken % 2048, 1000}); // a whole row, several times over
    }
    int index = 0;
    for (int cell = 0; cell < 2048 * 2048; ++cell) {
        const SnakeCell at{cell % 2048, cell / 2048};
        if (free.contains(at) && index++ % 31 == 0) {
            ASSERT_EQ(free[index - 1], at);
        }
    }
    EXPECT_EQ(index, free.size());
}

TEST(SnakeGame, GetsFasterAsItShould) {
    const struct {
        const char* fault;
        int score, level;
        bool ramp;
        double interval;
    } cases[] = {
        {"the ramp begins at the speed's own interval", 0, 4, true, 0.18},
        {"and ends at 35", 35, 4, true, 0.075},
        {"and stays there", 4194304, 4, true, 0.075},
        {"a point is three milliseconds at middle speed", 1, 4, true, 0.177},
        {"the line is scaled to the level", 10, 1, true, 0.15 * 0.26 / 0.18},
        {"a level begins at its own interval", 0, 9, true, 0.06},
        {"there is a floor", 35, 9, true, 0.045},
        {"a negative score slows nothing down", lowest, 4, true, 0.18},
        {"without the ramp the score changes nothing", 35, 9, false, 0.06},
    };
    for (const auto& each : cases) {
        EXPECT_NEAR(SnakeGame::stepInterval(each.score, SnakeSpeed(each.level), each.ramp), each.interval,
                    1e-12)
            << each.fault;
    }
    SnakeScript script;
    script.run("food=5,4 .");
    EXPECT_NEAR(script.game.stepInterval(), 0.177, 1e-12);
}

} // namespace
} // namespace FellowCore
