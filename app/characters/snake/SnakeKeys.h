#pragma once

#include "core/snake/SnakeCommand.h"

#include <optional>

class QKeyEvent;

namespace DeskSprites {

/// The press as the game knows it; nothing for every other key. A keyboard whose letters are not Latin turns
/// with the keys that stand where W, A, S and D do.
std::optional<FellowCore::SnakeKeyPress> snakeKeyPress(const QKeyEvent& event);

} // namespace DeskSprites
