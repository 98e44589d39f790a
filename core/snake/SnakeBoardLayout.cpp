#include "core/snake/SnakeBoardLayout.h"

#include "core/snake/SnakeGame.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

constexpr double defaultArtUnit = 2;

double forcedSide(double side) {
    return std::isfinite(side) && side > 0 ? side : 0;
}

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

/// How many tiles fit. Counted in pixels, where a screen that is a whole number of tiles wide is exactly
/// that.
int tilesIn(double side, const PixelScale& pixels) {
    const double tiles = std::floor(side * pixels.perPoint / pixels.perTile());
    return static_cast<int>(std::min<double>(tiles, SnakeGame::largestSide));
}

double centredOrigin(double side, double boardSide, double scale) {
    const double onPixel = std::floor((side - boardSide) / 2 * scale) / scale;
    return std::isfinite(onPixel) ? onPixel : 0;
}

} // namespace

SnakeBoardLayout::SnakeBoardLayout(Size size, double wishedUnit, double backingScale) {
    const PixelScale pixels(wishedUnit, backingScale);
    const double width = forcedSide(size.width);
    const double height = forcedSide(size.height);
    artUnit = pixels.perArtUnit / pixels.perPoint;
    tile = artUnit * artUnitsPerTile;
    columns = tilesIn(width, pixels);
    rows = tilesIn(height, pixels);
    frame.width = columns * tile;
    frame.height = rows * tile;
    frame.x = centredOrigin(width, frame.width, pixels.perPoint);
    frame.y = centredOrigin(height, frame.height, pixels.perPoint);
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
