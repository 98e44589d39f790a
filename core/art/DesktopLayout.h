#pragma once

#include "core/base/Geometry.h"

/// Where a character's window stands, told by the foot of its art and not by the window's own corner.
namespace FellowCore::DesktopLayout {

/// The point that stands for a character: the horizontal middle and the bottom of `artwork`, a rectangle
/// inside the window, in screen coordinates. It is a position that survives a change of size.
Point anchor(const Rect& frame, const Rect& artwork);

/// The window's frame at `size` with the foot of `artwork` on `anchor`, kept inside `visible`. A window too
/// big for the screen stands at its left or bottom edge; so does one whose anchor is not a number.
Rect frame(Size size, const Rect& artwork, Point anchor, const Rect& visible);

/// `frame` moved as little as needed to lie inside `visible`, axis by axis; the left and bottom edges win.
Rect clamped(const Rect& frame, const Rect& visible);

} // namespace FellowCore::DesktopLayout
