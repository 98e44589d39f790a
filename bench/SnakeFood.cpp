// What a bite costs on the largest board as the snake grows, beside the way that lists the whole board for
// each.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include "core/snake/SnakeGame.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <stdexcept>
#include <unordered_set>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::SnakeCell;
using FellowCore::SnakeDirection;
using FellowCore::SnakeFreeCells;
using FellowCore::SnakeGame;
using FellowCore::SnakeStep;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr double budgetMicroseconds = 100;
constexpr int side = SnakeGame::largestSide;
constexpr int bites = 5000;
constexpr int quickBites = 500;
constexpr int listings = 5;

std::mt19937& randomness() {
    static std::mt19937 random(1); // the same games in every run
    return random;
}

SnakeCell anywhere(const SnakeFreeCells& free) {
    return free[std::uniform_int_distribution(0, free.size() - 1)(randomness())];
}

/// A closed way through all cells on which a new game begins: the rows from the bottom up, to and fro, and
/// back down the first column.
SnakeDirection alongCircuit(SnakeCell at) {
    if (at.x == 0) {
        return at.y == 0 ? SnakeDirection::right : SnakeDirection::down;
    }
    if (at.y % 2 == 0) {
        return at.x < side - 1 ? SnakeDirection::right : SnakeDirection::up;
    }
    return at.x > 1 || at.y == side - 1 ? SnakeDirection::left : SnakeDirection::up;
}

/// Puts the food before the snake's nose, makes the step, and tells how long the step took.
double bite(SnakeGame& game) {
    const SnakeDirection ahead = alongCircuit(game.body().front());
    game.turn(ahead);
    const SnakeCell next = game.body().front() + offset(ahead);
    game.placeFood([next](const SnakeFreeCells&) { return next; });
    const auto start = Clock::now();
    const SnakeStep step = game.step(anywhere);
    const Microseconds taken = Clock::now() - start;
    if (step != SnakeStep::ate) {
        throw std::runtime_error("the snake did not find its food");
    }
    return taken.count();
}

double stepWithoutFood(SnakeGame& game) {
    game.turn(alongCircuit(game.body().front()));
    game.placeFood([](const SnakeFreeCells& free) { return free[free.size() - 1]; });
    const auto start = Clock::now();
    const SnakeStep step = game.step(anywhere);
    const Microseconds taken = Clock::now() - start;
    if (step != SnakeStep::moved) {
        throw std::runtime_error("the snake did not just move");
    }
    return taken.count();
}

/// A set of the body, a list of the board without it, and one entry of that.
double listing(const SnakeGame& game) {
    const auto number = [](SnakeCell cell) { return cell.y * side + cell.x; };
    const auto start = Clock::now();
    std::unordered_set<int> body;
    for (const SnakeCell cell : game.body()) {
        body.insert(number(cell));
    }
    std::vector<SnakeCell> free;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (!body.contains(number({x, y}))) {
                free.push_back({x, y});
            }
        }
    }
    const int chosen = std::uniform_int_distribution(0, game.freeCells().size() - 1)(randomness());
    const SnakeCell found = free.at(static_cast<std::size_t>(chosen));
    const Microseconds taken = Clock::now() - start;
    if (found != game.freeCells()[chosen]) {
        throw std::runtime_error("the two ways disagree about the free cells");
    }
    return taken.count();
}

std::vector<double> measure(int times, const std::function<double()>& once) {
    std::vector<double> each(static_cast<std::size_t>(times));
    std::ranges::generate(each, once);
    return each;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? quickBites : bites;
    Bench::Figures figures;
    SnakeGame game(side, side, anywhere);
    for (const int length : {4, 1000, 100'000, 1'000'000, 4'000'000}) {
        while (static_cast<int>(game.body().size()) < length) {
            bite(game);
        }
        const std::string segments = ", " + std::to_string(length) + " segments";
        const auto each = measure(times, [&game] { return bite(game); });
        figures.add({"snake: step with food" + segments, each, "us", budgetMicroseconds, 2});
        const auto moves = measure(times, [&game] { return stepWithoutFood(game); });
        figures.add({"snake: step without food" + segments, moves, "us", budgetMicroseconds, 2});
        const auto listed = measure(listings, [&game] { return listing(game); });
        figures.add({"snake: the whole board listed" + segments, listed, "us", std::nullopt, 0});
    }
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
