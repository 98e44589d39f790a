#include "core/sound/StereoPan.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace FellowCore {

namespace {

/// -1 at the screen's left edge, 0 at its middle or where no answer exists, 1 at its right edge.
double sideOf(Point position, const Rect& screen) {
    if (!position.isFinite() || !screen.isFinite() || screen.isEmpty())
        return 0;
    const double side = (position.x - screen.midX()) / (screen.width / 2);
    return std::isfinite(side) ? std::clamp(side, -1.0, 1.0) : 0;
}

} // namespace

StereoGains stereoPan(Point position, const Rect& screen) {
    const double angle = (1 + widestPan * sideOf(position, screen)) * std::numbers::pi / 4;
    return {std::cos(angle), std::sin(angle)};
}

} // namespace FellowCore
