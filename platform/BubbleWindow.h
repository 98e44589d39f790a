#pragma once

#include "core/base/Geometry.h"

class QWidget;

namespace Platform {

/// When a bubble or panel may have the keyboard.
enum class BubbleKeyboard {
    never,   ///< it holds buttons only and leaves the keyboard with the user's application
    onClick, ///< not on show, but when the user clicks into it or `activateBubbleWindow` is called
};

/// Makes a top-level widget a bubble beside a character: frameless, translucent, above other windows, on
/// every workspace, in no task list and no pager, shown without taking the keyboard. Call once, before the
/// first show and after every other change of window flags; the native window exists afterwards. It may be
/// shown and hidden again as often as wanted.
void prepareBubbleWindow(QWidget& window, BubbleKeyboard keyboard);

/// Moves and sizes a top-level widget in screen coordinates (points, y up), edges rounded to whole points. An
/// empty size keeps the widget's own.
void placeWindow(QWidget& window, const FellowCore::Rect& frame);
/// Where a top-level widget stands, in screen coordinates.
FellowCore::Rect windowFrame(const QWidget& window);

/// Gives the keyboard to a shown window that accepts it, on the user's behalf (a shortcut, a menu entry).
void activateBubbleWindow(QWidget& window);

} // namespace Platform
