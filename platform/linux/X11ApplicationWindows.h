#pragma once

#include "platform/ApplicationWindows.h"
#include "platform/linux/X11Display.h"

namespace Platform {

/// The windows in _NET_CLIENT_LIST_STACKING, or else in _NET_CLIENT_LIST.
class X11ApplicationWindows final : public ApplicationWindows {
public:
    explicit X11ApplicationWindows(const X11Display& display) : display_(display) {}

    std::vector<RunningApplication> list() override;
    bool activate(const RunningApplication& application) override;
    bool close(const RunningApplication& application) override;

private:
    const X11Display& display_;
};

} // namespace Platform
