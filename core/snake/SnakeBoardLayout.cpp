#include "core/snake/SnakeBoardLayout.h"

#include "core/snake/SnakeGame.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

constexpr double defaultArtUnit = 2;

/// How the screen's pixels carry the art.
struct PixelScale {
    double perPoint;
    double perArtUnit; ///< whole

    PixelScale(double unit, double scale)
        : perPoint(std::isfinite(scale) && scale >= 1 ? scale : 1),
          perArtUnit(snapped(std::isfinite(unit) && unit >= 0 ? unit : defaultArtUnit)) {
        // Finite numbers whose product is not are no better than those that never were.
        if (!std::isfinite(perTile())) {
            perPoint = 1;
            perArtUnit = defaultArtUnit;
        }
    }

    double perTile() const { return perArtUnit * SnakeBoardLayout::artUnitsPerTile; }

private:
    double snapped(double unit) const { return std::max(1.0, roundedHalfAway(unit * perPoint)); }
};

/// One side of the board.
struct Span {
    double origin;
    double length;
    int tiles;
};

/// Reckoned in pixels to the end: in points, a window that is a whole number of tiles wide could come out a
/// trifle less.
Span spanIn(double side, const PixelScale& pixels) {
    const double asked = side * pixels.perPoint;
    const double room = std::isfinite(asked) && asked > 0 ? asked : 0;
    const double tiles = std::min<double>(std::floor(room / pixels.perTile()), SnakeGame::largestSide);
    const double length = tiles * pixels.perTile();
    const double origin = std::floor((room - length) / 2);
    return {origin / pixels.perPoint, length / pixels.perPoint, static_cast<int>(tiles)};
}

} // namespace

SnakeBoardLayout::SnakeBoardLayout(Size size, double wishedUnit, double backingScale) {
    const PixelScale pixels(wishedUnit, backingScale);
    const Span across = spanIn(size.width, pixels);
    const Span upwards = spanIn(size.height, pixels);
    artUnit = pixels.perArtUnit / pixels.perPoint;
    tile = artUnit * artUnitsPerTile;
    frame = {across.origin, upwards.origin, across.length, upwards.length};
    columns = across.tiles;
    rows = upwards.tiles;
}

bool SnakeBoardLayout::fitsGame() const {
    return std::min(columns, rows) >= SnakeGame::smallestSide;
}

Rect SnakeBoardLayout::rect(SnakeCell cell) const {
    return {frame.minX() + cell.x * tile, frame.minY() + cell.y * tile, tile, tile};
}

Rect SnakeBoardLayout::overlayFrame(const Rect& screen, const Rect& visible) {
    if (!visible.isFinite() || !screen.intersects(visible)) {
        return screen;
    }
    const double top = std::min(screen.maxY(), visible.maxY());
    return {screen.x, screen.y, screen.width, top - screen.y};
}

} // namespace FellowCore
