#pragma once

#include "core/base/Geometry.h"

#include <QCursor>
#include <QPainter>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <Qt>

#include <vector>

namespace Platform {

/// What the pointer did on a surface.
struct PointerEvent {
    FellowCore::Point screen;              ///< screen coordinates: points, y up
    FellowCore::Point window;              ///< points from the lower left corner of the surface, y up
    Qt::MouseButton button = Qt::NoButton; ///< the button that changed; NoButton for moves
    Qt::MouseButtons held;                 ///< the buttons that are down after the event
    Qt::KeyboardModifiers modifiers;
    int clickCount = 0; ///< presses and releases: 1 for a click, 2 for a double click, ...; 0 for moves
};

/// What the wheel or the touchpad did on a surface.
struct WheelEvent {
    FellowCore::Point screen; ///< screen coordinates: points, y up
    FellowCore::Point window; ///< points from the lower left corner of the surface, y up
    QPoint angleDelta;        ///< eighths of a degree; a notch is 120; positive y is away from the user
    Qt::KeyboardModifiers modifiers;
};

/// Who draws a surface and answers for it. All calls come on the main loop. Only `paint` must be written.
class DesktopSurfaceClient {
public:
    virtual ~DesktopSurfaceClient() = default;

    /// Draws into a cleared, transparent picture of `size` points. Coordinates are the surface's points, y
    /// DOWN from the upper left corner, because they are Qt's; the painter scales to pixels and is clipped to
    /// what needs paint.
    virtual void paint(QPainter& painter, QSizeF size) = 0;

    virtual void pointerPressed(const PointerEvent&) {}
    virtual void pointerMoved(const PointerEvent&) {}
    virtual void pointerReleased(const PointerEvent&) {}
    /// The pointer has come onto the input region, or left it. When the region changes under a still pointer,
    /// an enter waits for the next move, and a leave waits a quarter of a second for the region to come back,
    /// so that a blink is no leave. While a button is held there is no enter and no leave.
    virtual void pointerEntered(const PointerEvent&) {}
    virtual void pointerLeft() {}
    /// A press will not be followed by its release, because the surface was hidden or lost the pointer.
    virtual void pointerCancelled() {}
    virtual void wheelTurned(const WheelEvent&) {}
    /// A menu was asked for at a point of the screen, by the right button going down. The right button makes
    /// no pressed or released call.
    virtual void contextMenuRequested(FellowCore::Point) {}
    /// Plain text was dropped on a surface that accepts drops.
    virtual void textDropped(const QString&) {}
    /// The surface has come to a screen with another number of pixels in a point; it is painted anew
    /// afterwards.
    virtual void backingScaleChanged(double) {}
    /// Assistive technology pressed the surface, or asked for its menu.
    virtual void accessiblePress() {}
    virtual void accessibleShowMenu() {}
};

/// A transparent window on the desktop in which one character stands: above other windows, also full-screen
/// ones, on every workspace, in no task list, never with the keyboard. Pointer events come only over its
/// input region; elsewhere they go to whatever lies below. Where no compositor makes windows translucent,
/// only the input region can be seen. Made by `System::makeSurface`; hidden and of no size at first. It may
/// be destroyed at any time, also from within its client's calls.
class DesktopSurface {
public:
    virtual ~DesktopSurface() = default;

    /// Places and sizes the surface exactly, in screen coordinates, also outside every screen. Lower left
    /// corner and size are each rounded to whole points, as `frame` then tells. A rectangle that is empty or
    /// not finite is ignored.
    virtual void setFrame(const FellowCore::Rect& frame) = 0;
    virtual FellowCore::Rect frame() const = 0;

    /// Which part takes the pointer: rectangles in points, y DOWN from the surface's upper left corner (as
    /// row runs of an image come). They are widened to whole pixels. None at all lets everything through,
    /// which is also how a surface begins. Costs nothing when the region in pixels stays the same.
    virtual void setInputRegion(std::vector<QRectF> region) = 0;
    /// Takes the pointer everywhere while true, as a drag wants; the region is kept for afterwards.
    virtual void setInputWhole(bool whole) = 0;
    /// Whether text may be dropped here; no at first.
    virtual void setAcceptsText(bool accepts) = 0;
    virtual void setCursor(Qt::CursorShape shape) = 0;

    virtual void show() = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    /// Above every other window, other surfaces among them.
    virtual void raise() = 0;

    /// Asks for paint, of everything or of a rectangle in points, y DOWN; calls before the next frame are
    /// joined.
    virtual void update() = 0;
    virtual void update(const QRect& part) = 0;

    /// Pixels in a point on the screen the surface is on.
    virtual double backingScale() const = 0;
    /// The window system's own number of the window; 0 before it exists.
    virtual unsigned long long windowId() const = 0;

    /// What assistive technology reads: a button with this name, value and description.
    virtual void setAccessible(const QString& name, const QString& value, const QString& description) = 0;
};

} // namespace Platform
