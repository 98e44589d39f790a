#include "core/art/DesktopLayout.h"

#include <algorithm>

namespace FellowCore::DesktopLayout {

namespace {

// The floor is applied last and so wins. Both functions of the library answer their first argument when the
// second is not a number, which sends such a coordinate to the near edge.
double bounded(double value, double low, double high) {
    return std::max(low, std::min(value, high));
}

} // namespace

Point anchor(const Rect& frame, const Rect& artwork) {
    return {frame.x + artwork.midX(), frame.y + artwork.minY()};
}

Rect frame(Size size, const Rect& artwork, Point anchor, const Rect& visible) {
    return clamped({anchor.x - artwork.midX(), anchor.y - artwork.minY(), size.width, size.height}, visible);
}

Rect clamped(const Rect& frame, const Rect& visible) {
    return frame.at({bounded(frame.x, visible.minX(), visible.maxX() - frame.width),
                     bounded(frame.y, visible.minY(), visible.maxY() - frame.height)});
}

} // namespace FellowCore::DesktopLayout
