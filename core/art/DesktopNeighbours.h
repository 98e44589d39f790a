#pragma once

#include "core/base/Geometry.h"

/// Where a character goes that is brought out next to one that already stands on the desktop.
namespace FellowCore::DesktopNeighbours {

constexpr double standardGap = 24; ///< points between two characters

/// A frame of `size` to the left of `beside` on the same foot line, or to its right when the left has no
/// room, kept inside `visible`.
Rect frame(Size size, const Rect& beside, const Rect& visible, double gap = standardGap);

} // namespace FellowCore::DesktopNeighbours
