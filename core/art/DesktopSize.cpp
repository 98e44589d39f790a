#include "core/art/DesktopSize.h"

#include "core/base/Geometry.h"

#include <algorithm>
#include <cmath>

namespace FellowCore::DesktopSize {

double normalized(double height) {
    return clamped(roundedHalfAway(height));
}

double clamped(double height) {
    return std::isfinite(height) ? std::clamp(height, smallestHeight, largestHeight) : standardHeight;
}

double canvasHeight(double visible, double artwork) {
    const double height = std::isfinite(visible) ? visible : standardHeight;
    const double fraction = std::isnormal(artwork) && artwork > 0 ? artwork : 1;
    const double canvas = roundedHalfAway(height / fraction);
    return std::isfinite(canvas) ? canvas : roundedHalfAway(height);
}

} // namespace FellowCore::DesktopSize
