#include "app/characters/snake/SnakePlace.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::Rect;
using FellowCore::SnakeBoardLayout;

namespace {

constexpr double headerHeight = 56; ///< in points, as all of these
constexpr double footerHeight = 48;
constexpr double sideRoom = 24;
constexpr int frameUnits = 3; ///< thickness of the board's frame in art pixels

/// About thirty rows, whatever the screen: a snake that is large enough to like and small enough to grow.
constexpr double rowsWished = 30;
constexpr double smallestUnit = 2;
constexpr double largestUnit = 6;

double artUnitFor(const Rect& content) {
    const double unit = std::floor(content.height / (rowsWished * SnakeBoardLayout::artUnitsPerTile));
    return std::clamp(unit, smallestUnit, largestUnit);
}

Rect contentOf(const Platform::ScreenInfo& screen) {
    const Rect free = SnakeBoardLayout::overlayFrame(screen.frame, screen.visibleFrame);
    return free.translated(-screen.frame.x, -screen.frame.y);
}

Rect roomIn(const Rect& content) {
    return {content.x + sideRoom, content.y + footerHeight, content.width - 2 * sideRoom,
            content.height - headerHeight - footerHeight};
}

} // namespace

SnakePlace::SnakePlace(Platform::ScreenInfo screen)
    : screen_(std::move(screen)), content_(contentOf(screen_)), room_(roomIn(content_)),
      layout_({room_.width, room_.height}, artUnitFor(content_), screen_.backingScale) {}

int SnakePlace::toPixels(double points) const {
    return static_cast<int>(std::lround(points * screen_.backingScale));
}

int SnakePlace::artPixels() const {
    return toPixels(layout_.artUnit);
}

QRect SnakePlace::boardPixels() const {
    const int width = layout_.columns * tilePixels();
    const int height = layout_.rows * tilePixels();
    const int left = toPixels(room_.x) + toPixels(layout_.frame.x);
    const int bottom = toPixels(screen_.frame.height) - toPixels(room_.y) - toPixels(layout_.frame.y);
    return {left, bottom - height, width, height};
}

QRect SnakePlace::framePixels() const {
    const int thickness = frameUnits * artPixels();
    return boardPixels().adjusted(-thickness, -thickness, thickness, thickness);
}

QRect SnakePlace::cellPixels(FellowCore::SnakeCell cell) const {
    const QRect board = boardPixels();
    const int tile = tilePixels();
    return {board.left() + cell.x * tile, board.top() + (layout_.rows - 1 - cell.y) * tile, tile, tile};
}

QRect SnakePlace::inPoints(const QRect& pixels) const {
    const double scale = screen_.backingScale;
    return QRectF(pixels.x() / scale, pixels.y() / scale, pixels.width() / scale, pixels.height() / scale)
        .toAlignedRect();
}

QRect SnakePlace::header() const {
    const QRect frame = inPoints(framePixels());
    const int top = static_cast<int>(std::lround(screen_.frame.height - content_.maxY()));
    return {frame.left(), top, frame.width(), frame.top() - top};
}

QRect SnakePlace::footer() const {
    const QRect frame = inPoints(framePixels());
    const int bottom = static_cast<int>(std::lround(screen_.frame.height - content_.minY()));
    return {frame.left(), frame.bottom() + 1, frame.width(), bottom - frame.bottom() - 1};
}

} // namespace DeskSprites
