#include "platform/linux/X11FrontmostApplication.h"

#include "platform/linux/X11Applications.h"

#include <QTimer>

#include <utility>

namespace Platform {

xcb_window_t X11FrontmostApplication::activeWindow() const {
    const auto active = display_.values(display_.root(), X11Atom::netActiveWindow, XCB_ATOM_WINDOW);
    return active.empty() ? static_cast<xcb_window_t>(XCB_NONE) : active[0];
}

std::optional<RunningApplication> X11FrontmostApplication::current() {
    const xcb_window_t window = activeWindow();
    if (window == XCB_NONE)
        return std::nullopt;
    return x11Application(display_, window);
}

bool X11FrontmostApplication::activate(const RunningApplication& application) {
    return activateX11Window(display_, static_cast<xcb_window_t>(application.window));
}

void X11FrontmostApplication::setOnChange(std::function<void()> handler) {
    onChange_ = std::move(handler);
    if (!onChange_) {
        filter_.reset();
        return;
    }
    lastTold_ = activeWindow();
    if (filter_)
        return;
    filter_ = std::make_unique<X11EventFilter>([this](const xcb_generic_event_t& event) {
        if (x11EventNumber(event) != XCB_PROPERTY_NOTIFY)
            return;
        const auto& change = x11Event<xcb_property_notify_event_t>(event);
        if (change.window != display_.root() || change.atom != display_.atom(X11Atom::netActiveWindow))
            return;
        QTimer::singleShot(0, this, [this] {
            const xcb_window_t now = activeWindow();
            if (std::exchange(lastTold_, now) != now && onChange_)
                onChange_();
        });
    });
}

} // namespace Platform
