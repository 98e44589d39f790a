#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/X11Display.h"

namespace Platform {

/// What a window tells of its application.
RunningApplication x11Application(const X11Display& display, xcb_window_t window);
/// Whether the window exists still.
bool x11WindowExists(const X11Display& display, xcb_window_t window);
/// Brings a window to the front and gives it the keyboard, on the user's behalf. False when it is gone.
bool activateX11Window(const X11Display& display, xcb_window_t window);

} // namespace Platform
