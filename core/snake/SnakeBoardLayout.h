#pragma once

#include "core/base/Geometry.h"
#include "core/snake/SnakeCell.h"

namespace FellowCore {

/// How a board of whole tiles stands in a window, so that every edge of a tile falls on a pixel of the
/// screen.
struct SnakeBoardLayout {
    static constexpr int artUnitsPerTile = 8;

    double artUnit; ///< side of one art pixel in points, a whole number of screen pixels
    double tile;    ///< side of a cell in points
    Rect frame;     ///< the board in the window, in points, y upwards
    int columns;    ///< 0...2048
    int rows;       ///< 0...2048

    /// `size` is the window's in points, `artUnit` the wished side of an art pixel in points, and
    /// `backingScale` the screen pixels in a point. What is not finite or too small to make sense is
    /// replaced: a side by 0, the unit by 2, the scale by 1. A board that has no room is 0 cells wide or
    /// high; a game raises such sides to its smallest, so ask `fitsGame` first.
    SnakeBoardLayout(Size size, double artUnit, double backingScale);

    /// Whether the smallest board of a game has room.
    bool fitsGame() const;
    /// Where a cell stands in the window.
    Rect rect(SnakeCell cell) const;

    /// What the game's window takes of a screen: its full width, from its lower edge to the upper edge of the
    /// part that menu bars and panels leave visible. The whole screen when `visible` makes no sense on it.
    static Rect overlayFrame(const Rect& screen, const Rect& visible);

    friend bool operator==(const SnakeBoardLayout&, const SnakeBoardLayout&) = default;
};

} // namespace FellowCore
