#include "core/snake/SnakeWords.h"

namespace FellowCore {

std::string_view snakeKeysHint(SnakeStatus status) {
    return isFinished(status) ? "Return to play again  ·  Esc to quit"
                              : "↑ ↓ ← → / WASD   ·   Space pause   ·   Esc quit";
}

std::string snakeAccessibilityText(int bestScore) {
    return "Snake game, best score " + std::to_string(bestScore);
}

} // namespace FellowCore
