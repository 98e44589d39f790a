#pragma once

#include "core/base/Instant.h"
#include "core/snake/SnakeCell.h"
#include "core/snake/SnakeDirection.h"
#include "core/snake/SnakeFreeCells.h"
#include "core/snake/SnakeSpeed.h"
#include "core/snake/SnakeStatus.h"

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace FellowCore {

/// Chooses where the food goes: given the free cells, of which there is at least one, it gives one of them;
/// `free[random number below free.size()]` is enough. It is the only source of chance in a game, so a game
/// can be played again.
using ChooseSnakeFood = std::function<SnakeCell(const SnakeFreeCells&)>;

/// One game of snake on one board, as a value. Its fields are only read from outside, because the body and
/// the free cells must agree.
class SnakeGame {
public:
    static constexpr int smallestSide = 8;
    static constexpr int largestSide = 2048;
    static constexpr std::size_t mostTurns = 2;

    /// A running game with a snake of four in the middle, heading right. Each side is forced into
    /// `smallestSide`...`largestSide`.
    SnakeGame(int columns, int rows, const ChooseSnakeFood& chooseFood);

    int columns() const { return free_.columns(); }
    int rows() const { return free_.rows(); }
    const std::deque<SnakeCell>& body() const { return body_; } ///< head first, never empty
    SnakeDirection direction() const { return direction_; }     ///< of the last step
    const std::optional<SnakeCell>& food() const { return food_; }
    int score() const { return score_; }
    SnakeStatus status() const { return status_; }
    const std::vector<SnakeDirection>& turns() const { return turns_; } ///< still to be made, oldest first
    const SnakeFreeCells& freeCells() const { return free_; }           ///< the food's cell is one of them

    /// Queues a turn for the steps to come. Refused (false) while not running, while `mostTurns` wait, and
    /// when it equals or reverses the direction that the snake will have by then.
    bool turn(SnakeDirection direction);
    /// One step in the direction of the oldest queued turn, or straight on. The cell that the tail is about
    /// to leave may be entered.
    SnakeStep step(const ChooseSnakeFood& chooseFood);
    /// Puts the food elsewhere: where it is chosen, the first free cell if what is chosen is not free, and
    /// nowhere if nothing is free.
    void placeFood(const ChooseSnakeFood& chooseFood);

    /// True when the status changed: only a running game pauses and only a paused one resumes.
    bool pause();
    bool resume();
    bool togglePause();

    /// The time until the next step at middle speed, with the present score.
    Seconds stepInterval() const { return stepInterval(score_); }
    /// Falls in a straight line from 0.18 s at score 0 to 0.075 s at score 35, and stays there.
    static Seconds stepInterval(int score);
    /// The same line scaled so that it begins at the speed's own interval, and never below 0.045 s; that
    /// interval alone when the snake does not grow faster as it eats.
    static Seconds stepInterval(int score, SnakeSpeed speed, bool rampAsEating);

    friend bool operator==(const SnakeGame&, const SnakeGame&) = default;

private:
    SnakeStep end(SnakeStatus status, SnakeStep step);
    void moveInto(SnakeCell next, bool grows);

    SnakeFreeCells free_;
    std::deque<SnakeCell> body_;
    SnakeDirection direction_ = SnakeDirection::right;
    std::optional<SnakeCell> food_;
    int score_ = 0;
    SnakeStatus status_ = SnakeStatus::running;
    std::vector<SnakeDirection> turns_;
};

} // namespace FellowCore
