#pragma once

namespace FellowCore {

/// How a game stands. The last two are final.
enum class SnakeStatus { running, paused, gameOver, won };

constexpr bool isFinished(SnakeStatus status) {
    return status == SnakeStatus::gameOver || status == SnakeStatus::won;
}

/// What one step did.
enum class SnakeStep {
    none, ///< the game was not running
    moved,
    ate,
    wallCollision,
    selfCollision,
    filledBoard, ///< ate, and nothing is free any more
};

/// Whether the step ended the game.
constexpr bool endsGame(SnakeStep step) {
    return step == SnakeStep::wallCollision || step == SnakeStep::selfCollision ||
           step == SnakeStep::filledBoard;
}

} // namespace FellowCore
