#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/X11Display.h"

#include <QObject>

#include <memory>

namespace Platform {

/// The active window as the window manager names it.
class X11FrontmostApplication final : public QObject, public FrontmostApplication {
public:
    explicit X11FrontmostApplication(const X11Display& display) : display_(display) {}

    std::optional<RunningApplication> current() override;
    bool activate(const RunningApplication& application) override;
    void setOnChange(std::function<void()> handler) override;

private:
    xcb_window_t activeWindow() const;

    const X11Display& display_;
    std::function<void()> onChange_;
    std::unique_ptr<X11EventFilter> filter_;
    xcb_window_t lastTold_ = XCB_NONE;
};

} // namespace Platform
