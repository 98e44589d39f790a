#pragma once

#include "platform/linux/X11Display.h"

#include <QRectF>

#include <vector>

namespace Platform {

/// The part of one window that takes the pointer, and, without a compositor, the part that can be seen (X
/// Nonrectangular Window Shape Extension 1.1). Sends a request only when something changes in pixels.
class X11Shape {
public:
    explicit X11Shape(const X11Display& display) : display_(display) {}

    /// Names the window once it exists; what was set before goes to it now.
    void attach(xcb_window_t window);

    /// Rectangles in points, y down, widened to whole pixels.
    void setRegion(std::vector<QRectF> region);
    void setScale(double pixelsPerPoint);
    void setWhole(bool whole);
    void setTranslucent(bool translucent);

    /// How many requests went out, for measuring.
    int requestCount() const { return requests_; }

private:
    void rebuild();
    void sendInput();
    void sendBounding();

    const X11Display& display_;
    xcb_window_t window_ = XCB_NONE;
    std::vector<QRectF> region_;
    std::vector<xcb_rectangle_t> pixels_;
    double scale_ = 1;
    bool whole_ = false;
    bool translucent_ = true;
    int requests_ = 0;
};

} // namespace Platform
