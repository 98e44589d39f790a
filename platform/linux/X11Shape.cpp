#include "platform/linux/X11Shape.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Platform {
namespace {

constexpr double coordinateLimit = std::numeric_limits<std::int16_t>::max();

xcb_rectangle_t toPixels(const QRectF& rect, double scale) {
    const auto low = [scale](double value) {
        return std::floor(std::clamp(value * scale, 0.0, coordinateLimit));
    };
    const auto high = [scale](double value) {
        return std::ceil(std::clamp(value * scale, 0.0, coordinateLimit));
    };
    const double left = low(rect.left());
    const double top = low(rect.top());
    return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
            static_cast<std::uint16_t>(high(rect.right()) - left),
            static_cast<std::uint16_t>(high(rect.bottom()) - top)};
}

bool isUsable(const QRectF& rect) {
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && rect.width() > 0 && rect.height() > 0 &&
           std::isfinite(rect.right()) && std::isfinite(rect.bottom());
}

bool same(const std::vector<xcb_rectangle_t>& a, const std::vector<xcb_rectangle_t>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const xcb_rectangle_t& one, const xcb_rectangle_t& other) {
                          return one.x == other.x && one.y == other.y && one.width == other.width &&
                                 one.height == other.height;
                      });
}

} // namespace

void X11Shape::attach(xcb_window_t window) {
    window_ = window;
    sendInput();
    if (!translucent_)
        sendBounding();
}

void X11Shape::setRegion(std::vector<QRectF> region) {
    if (region == region_)
        return;
    region_ = std::move(region);
    rebuild();
}

void X11Shape::setScale(double pixelsPerPoint) {
    if (scale_ == pixelsPerPoint)
        return;
    scale_ = pixelsPerPoint;
    rebuild();
}

void X11Shape::setWhole(bool whole) {
    if (whole_ == whole)
        return;
    whole_ = whole;
    sendInput();
}

void X11Shape::setTranslucent(bool translucent) {
    if (translucent_ == translucent)
        return;
    translucent_ = translucent;
    sendBounding();
}

void X11Shape::rebuild() {
    std::vector<xcb_rectangle_t> pixels;
    pixels.reserve(region_.size());
    for (const QRectF& rect : region_) {
        if (isUsable(rect))
            pixels.push_back(toPixels(rect, scale_));
    }
    if (same(pixels, pixels_))
        return;
    pixels_ = std::move(pixels);
    if (!whole_)
        sendInput();
    if (!translucent_)
        sendBounding();
}

void X11Shape::sendInput() {
    if (window_ == XCB_NONE)
        return;
    constexpr auto everything = static_cast<std::uint16_t>(coordinateLimit);
    const xcb_rectangle_t whole{0, 0, everything, everything};
    const auto count = whole_ ? 1U : static_cast<std::uint32_t>(pixels_.size());
    xcb_shape_rectangles(display_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0, count, whole_ ? &whole : pixels_.data());
    xcb_flush(display_.connection());
    ++requests_;
}

void X11Shape::sendBounding() {
    if (window_ == XCB_NONE)
        return;
    if (translucent_)
        xcb_shape_mask(display_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0,
                       XCB_NONE);
    else
        xcb_shape_rectangles(display_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                             static_cast<std::uint32_t>(pixels_.size()), pixels_.data());
    xcb_flush(display_.connection());
    ++requests_;
}

} // namespace Platform
