#include "core/art/DesktopNeighbours.h"

#include "core/art/DesktopLayout.h"

namespace FellowCore::DesktopNeighbours {

Rect frame(Size size, const Rect& beside, const Rect& visible, double gap) {
    const double left = beside.minX() - size.width - gap;
    const double x = left < visible.minX() ? beside.maxX() + gap : left;
    return DesktopLayout::clamped({x, beside.minY(), size.width, size.height}, visible);
}

} // namespace FellowCore::DesktopNeighbours
