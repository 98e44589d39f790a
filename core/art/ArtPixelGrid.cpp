#include "core/art/ArtPixelGrid.h"

#include "core/art/DesktopSize.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

double usableScale(double backingScale) {
    return std::isfinite(backingScale) ? std::max(1.0, backingScale) : 1.0;
}

double usableFraction(double fraction) {
    return std::isnormal(fraction) && fraction > 0 ? fraction : 1.0;
}

double atLeastOne(double side) {
    return std::isfinite(side) ? std::max(1.0, side) : 1.0;
}

double snapCoordinate(double value, double backingScale) {
    const double pixel = 1 / usableScale(backingScale);
    return std::isfinite(value) ? roundedHalfAway(value / pixel) * pixel : 0;
}

/// The better of two heights: `challenger` only when it is strictly closer to `wish`.
double closer(double wish, double holder, double challenger) {
    return std::abs(challenger - wish) < std::abs(holder - wish) ? challenger : holder;
}

} // namespace

ArtPixelGrid::ArtPixelGrid(Size size) : canvas{atLeastOne(size.width), atLeastOne(size.height)} {}

ArtPixelGrid::ArtPixelGrid(Size source, double sourcePixelPitch) : ArtPixelGrid(source) {
    const double pitch = std::isfinite(sourcePixelPitch) && sourcePixelPitch > 0 ? sourcePixelPitch : 1;
    canvas = {atLeastOne(roundedHalfAway(source.width / pitch)),
              atLeastOne(roundedHalfAway(source.height / pitch))};
}

double ArtPixelGrid::unit(double visibleHeight, double visibleFraction, double backingScale,
                          Sizing sizing) const {
    return effectiveHeight(visibleHeight, visibleFraction, backingScale, sizing) /
           (usableFraction(visibleFraction) * canvas.height);
}

double ArtPixelGrid::effectiveHeight(double visibleHeight, double visibleFraction, double backingScale,
                                     Sizing sizing) const {
    if (sizing == Sizing::snapped) {
        return snappedVisibleHeight(visibleHeight, visibleFraction, backingScale);
    }
    const double height = std::isfinite(visibleHeight) ? visibleHeight : DesktopSize::standardHeight;
    return std::clamp(height, DesktopSize::smallestContinuousHeight, DesktopSize::largestHeight);
}

double ArtPixelGrid::snappedVisibleHeight(double visibleHeight, double visibleFraction,
                                          double backingScale) const {
    using namespace DesktopSize;
    const double wish = clamped(visibleHeight);
    const double limit = closer(wish, smallestHeight, largestHeight);
    const double scale = usableScale(backingScale);
    const double artPixels = usableFraction(visibleFraction) * canvas.height;
    const double lowest = std::max(1.0, std::ceil(scale * smallestHeight / artPixels));
    const double highest = std::floor(scale * largestHeight / artPixels);
    if (lowest > highest) {
        return limit;
    }
    const double step = std::clamp(roundedHalfAway(scale * wish / artPixels), lowest, highest);
    return closer(wish, limit, step * artPixels / scale);
}

Rect ArtPixelGrid::rect(const Rect& bounds, double backingScale) const {
    const double ratio = std::min(bounds.width / canvas.width, bounds.height / canvas.height);
    const double width = canvas.width * ratio;
    const double height = canvas.height * ratio;
    const Point origin = snap({bounds.midX() - width / 2, bounds.midY() - height / 2}, backingScale);
    return {origin.x, origin.y, width, height};
}

Point ArtPixelGrid::snap(Point point, double backingScale) {
    return {snapCoordinate(point.x, backingScale), snapCoordinate(point.y, backingScale)};
}

} // namespace FellowCore
