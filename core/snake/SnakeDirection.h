#pragma once

#include "core/snake/SnakeCell.h"

#include <array>

namespace FellowCore {

/// Where the snake is heading.
enum class SnakeDirection { up, down, left, right };

inline constexpr std::array allSnakeDirections{SnakeDirection::up, SnakeDirection::down, SnakeDirection::left,
                                               SnakeDirection::right};

/// What one step in the direction adds to a cell.
SnakeCell offset(SnakeDirection direction);
bool isOpposite(SnakeDirection direction, SnakeDirection to);

} // namespace FellowCore
