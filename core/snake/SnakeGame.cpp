#include "core/snake/SnakeGame.h"

#include <algorithm>

namespace FellowCore {

namespace {

constexpr int firstLength = 4;
constexpr Seconds firstInterval = 0.18;
constexpr Seconds gainPerPoint = 0.003;
constexpr int lastGain = 35; ///< the score from which on the snake gets no faster
constexpr Seconds shortestInterval = 0.045;

int forcedSide(int side) {
    return std::clamp(side, SnakeGame::smallestSide, SnakeGame::largestSide);
}

} // namespace

SnakeGame::SnakeGame(int columns, int rows, const ChooseSnakeFood& chooseFood)
    : free_(forcedSide(columns), forcedSide(rows)) {
    const SnakeCell head{free_.columns() / 2, free_.rows() / 2};
    for (int back = 0; back < firstLength; ++back) {
        body_.push_back({head.x - back, head.y});
        free_.take(body_.back());
    }
    placeFood(chooseFood);
}

bool SnakeGame::turn(SnakeDirection direction) {
    if (status_ != SnakeStatus::running || turns_.size() >= mostTurns) {
        return false;
    }
    const SnakeDirection heading = turns_.empty() ? direction_ : turns_.back();
    if (direction == heading || isOpposite(direction, heading)) {
        return false;
    }
    turns_.push_back(direction);
    return true;
}

SnakeStep SnakeGame::step(const ChooseSnakeFood& chooseFood) {
    if (status_ != SnakeStatus::running) {
        return SnakeStep::none;
    }
    if (!turns_.empty()) {
        direction_ = turns_.front();
        turns_.erase(turns_.begin());
    }
    const SnakeCell next = body_.front() + offset(direction_);
    if (!free_.isOnBoard(next)) {
        return end(SnakeStatus::gameOver, SnakeStep::wallCollision);
    }
    const bool eats = food_ == next;
    const bool followsTail = !eats && next == body_.back();
    if (!free_.contains(next) && !followsTail) {
        return end(SnakeStatus::gameOver, SnakeStep::selfCollision);
    }
    moveInto(next, eats);
    if (!eats) {
        return SnakeStep::moved;
    }
    ++score_;
    placeFood(chooseFood);
    return food_ ? SnakeStep::ate : end(SnakeStatus::won, SnakeStep::filledBoard);
}

void SnakeGame::placeFood(const ChooseSnakeFood& chooseFood) {
    food_.reset();
    if (free_.size() == 0) {
        return;
    }
    const SnakeCell chosen = chooseFood(free_);
    food_ = free_.contains(chosen) ? chosen : free_[0];
}

bool SnakeGame::pause() {
    return status_ == SnakeStatus::running && togglePause();
}

bool SnakeGame::resume() {
    return status_ == SnakeStatus::paused && togglePause();
}

bool SnakeGame::togglePause() {
    if (isFinished(status_)) {
        return false;
    }
    status_ = status_ == SnakeStatus::running ? SnakeStatus::paused : SnakeStatus::running;
    return true;
}

Seconds SnakeGame::stepInterval(int score) {
    return firstInterval - gainPerPoint * std::clamp(score, 0, lastGain);
}

Seconds SnakeGame::stepInterval(int score, SnakeSpeed speed, bool rampAsEating) {
    const Seconds base = speed.baseInterval();
    return rampAsEating ? std::max(stepInterval(score) * (base / firstInterval), shortestInterval) : base;
}

SnakeStep SnakeGame::end(SnakeStatus status, SnakeStep step) {
    status_ = status;
    turns_.clear();
    return step;
}

// The tail goes first: the head may be about to enter the very cell that it leaves.
void SnakeGame::moveInto(SnakeCell next, bool grows) {
    if (!grows) {
        free_.release(body_.back());
        body_.pop_back();
    }
    body_.push_front(next);
    free_.take(next);
}

} // namespace FellowCore
