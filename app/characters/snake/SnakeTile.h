#pragma once

#include "core/snake/SnakeGame.h"

#include <QImage>

namespace DeskSprites {

/// How Snake's head looks at one.
enum class SnakeLook { awake, asleep };

/// The picture of one cell, 8 by 8 art pixels. Light comes from the upper left whichever way the snake turns,
/// so the shades are laid on after the shape was turned.
namespace SnakeTile {

/// The segment number `index` of the body, head first, as it joins its neighbours.
QImage segment(const FellowCore::SnakeGame& game, std::size_t index, SnakeLook look);
/// A flick of the tongue, for the cell in front of the head.
QImage tongue(FellowCore::SnakeDirection direction);
QImage food();
/// A stepped ring of light around the food, 3 by 3 cells with the food in the middle.
QImage glow();

} // namespace SnakeTile

} // namespace DeskSprites
