#pragma once

#include "core/snake/SnakeStatus.h"

#include <string>
#include <string_view>

namespace FellowCore {

/// What the character offers, in one sentence.
inline constexpr std::string_view snakeHelp = "Play on Snake’s screen. Avoid walls and yourself.";
/// How the game is played, for those who hear it.
inline constexpr std::string_view snakeAccessibilityHelp =
    "Arrow keys or W A S D to move. Plus and minus change speed. Space to pause or resume. Escape to quit.";

/// The line of keys under the board.
std::string_view snakeKeysHint(SnakeStatus status);
/// "Snake game, best score 12".
std::string snakeAccessibilityText(int bestScore);

} // namespace FellowCore
