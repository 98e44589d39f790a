#pragma once

#include "core/snake/SnakeBoardLayout.h"
#include "platform/Screens.h"

#include <QRect>

namespace DeskSprites {

/// Where everything of a game stands in its window, which covers the whole screen. Only the cells are placed
/// by `SnakeBoardLayout`; around them is room for the frame, the score above and the keys below, so that
/// nothing to read ever lies on the board.
///
/// Rectangles for the painter are device pixels of the window, y DOWN from its upper left corner.
class SnakePlace {
public:
    explicit SnakePlace(Platform::ScreenInfo screen);

    const Platform::ScreenInfo& screen() const { return screen_; }
    /// Whether the screen has room for the smallest game.
    bool fitsGame() const { return layout_.fitsGame(); }
    int columns() const { return layout_.columns; }
    int rows() const { return layout_.rows; }

    /// Side of an art pixel and of a cell, in device pixels.
    int artPixels() const;
    int tilePixels() const { return artPixels() * FellowCore::SnakeBoardLayout::artUnitsPerTile; }
    QRect cellPixels(FellowCore::SnakeCell cell) const;
    QRect boardPixels() const;
    /// The board with its frame.
    QRect framePixels() const;

    /// The same in points.
    QRect inPoints(const QRect& pixels) const;
    /// The strips above and below the board's frame, in points, as wide as the frame.
    QRect header() const;
    QRect footer() const;

private:
    int toPixels(double points) const;

    Platform::ScreenInfo screen_;
    FellowCore::Rect content_; ///< what no menu bar covers, in the window, y up
    FellowCore::Rect room_;    ///< for the cells
    FellowCore::SnakeBoardLayout layout_;
};

} // namespace DeskSprites
