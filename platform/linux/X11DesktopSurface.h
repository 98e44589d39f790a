#pragma once

#include "platform/DesktopSurface.h"
#include "platform/linux/X11Compositor.h"
#include "platform/linux/X11Shape.h"

namespace Platform {

class X11SurfaceWindow;

/// A surface as an override-redirect X window, which every window manager leaves alone.
class X11DesktopSurface final : public DesktopSurface {
public:
    X11DesktopSurface(const X11Display& display, X11Compositor& compositor, DesktopSurfaceClient& client);
    ~X11DesktopSurface() override;
    X11DesktopSurface(const X11DesktopSurface&) = delete;
    X11DesktopSurface& operator=(const X11DesktopSurface&) = delete;

    void setFrame(const FellowCore::Rect& frame) override;
    FellowCore::Rect frame() const override;
    void setInputRegion(std::vector<QRectF> region) override;
    void setInputWhole(bool whole) override;
    void setAcceptsText(bool accepts) override;
    void setCursor(Qt::CursorShape shape) override;
    void show() override;
    void hide() override;
    bool isVisible() const override;
    void raise() override;
    void update() override;
    void update(const QRect& part) override;
    double backingScale() const override;
    unsigned long long windowId() const override;
    void setAccessible(const QString& name, const QString& value, const QString& description) override;

    const X11Shape& shape() const { return shape_; }

private:
    void createWindow();

    const X11Display& display_;
    X11Compositor& compositor_;
    X11Shape shape_;
    X11SurfaceWindow* window_; ///< ends itself, in `retire`
};

} // namespace Platform
