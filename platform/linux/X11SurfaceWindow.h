#pragma once

#include "platform/DesktopSurface.h"
#include "platform/linux/PointerHover.h"
#include "platform/linux/SurfaceAccessible.h"

#include <QElapsedTimer>
#include <QRasterWindow>

namespace Platform {

/// The Qt window of a surface: turns Qt's events into calls of the client.
class X11SurfaceWindow final : public QRasterWindow {
    Q_OBJECT

public:
    explicit X11SurfaceWindow(DesktopSurfaceClient& client);

    /// No more calls reach the client; the window hides and deletes itself when no call is under way.
    void retire();

    void setAcceptsText(bool accepts) { acceptsText_ = accepts; }
    void setLabel(const SurfaceLabel& label);
    const SurfaceLabel& label() const { return label_; }
    /// The window was hidden: no release and no leave will come any more.
    void endPointer();
    void accessiblePress();
    void accessibleShowMenu();

    QAccessibleInterface* accessibleRoot() const override;

Q_SIGNALS:
    /// The window shows on a screen with another number of pixels in a point.
    void scaleChanged(double scale);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    template <typename Call>
    void tell(const Call& call);
    PointerEvent pointerEvent(QPointF window, QPointF global) const;
    PointerEvent pointerEvent(const QMouseEvent& event) const;
    void countClick(const QMouseEvent& event);
    void setHeld(Qt::MouseButtons held);
    bool dragEvent(QEvent& event);
    void checkScale();

    DesktopSurfaceClient* client_;
    int callDepth_ = 0;
    PointerHover hover_;
    QPointF hoverWindow_; ///< where the pointer last was, for the enter call
    QPointF hoverGlobal_;
    Qt::MouseButtons held_;
    Qt::MouseButton clickButton_ = Qt::NoButton;
    QPointF clickAt_;
    quint64 clickTime_ = 0;
    int clickCount_ = 0;
    bool acceptsText_ = false;
    double scale_ = 0;
    SurfaceLabel label_;
};

} // namespace Platform
