#include "platform/linux/X11ApplicationWindows.h"

#include "platform/linux/X11Applications.h"

#include <algorithm>

namespace Platform {
namespace {
constexpr std::uint32_t sourcePager = 2;
} // namespace

std::vector<RunningApplication> X11ApplicationWindows::list() {
    if (!display_.hasWindowManager())
        return {}; // a list that one left behind is none
    auto windows = display_.values(display_.root(), X11Atom::netClientListStacking, XCB_ATOM_WINDOW);
    if (windows.empty())
        windows = display_.values(display_.root(), X11Atom::netClientList, XCB_ATOM_WINDOW);
    std::vector<RunningApplication> found;
    found.reserve(windows.size());
    std::for_each(windows.rbegin(), windows.rend(),
                  [&](xcb_window_t window) { found.push_back(x11Application(display_, window)); });
    return found;
}

bool X11ApplicationWindows::activate(const RunningApplication& application) {
    return activateX11Window(display_, static_cast<xcb_window_t>(application.window));
}

bool X11ApplicationWindows::close(const RunningApplication& application) {
    const auto window = static_cast<xcb_window_t>(application.window);
    if (!display_.hasWindowManager() || !x11WindowExists(display_, window))
        return false;
    display_.messageRoot(window, X11Atom::netCloseWindow, {XCB_CURRENT_TIME, sourcePager, 0, 0, 0});
    return true;
}

} // namespace Platform
