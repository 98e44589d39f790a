#pragma once

#include "platform/FrontmostApplication.h"

#include <vector>

namespace Platform {

/// The windows of all applications, as the window manager lists them. Main thread only.
class ApplicationWindows {
public:
    virtual ~ApplicationWindows() = default;

    /// From the topmost down; where the window manager does not tell the order, from the newest to the
    /// oldest. Empty without a window manager. Takes a few milliseconds for a hundred windows.
    virtual std::vector<RunningApplication> list() = 0;
    /// Brings the window to the front, from a minimised state and from another workspace too, and gives it
    /// the keyboard. False when the window is gone.
    virtual bool activate(const RunningApplication& application) = 0;
    /// Asks the window to close, as a press on its cross does: the application may ask the user first, or
    /// refuse. False when the window is gone or no window manager passes the wish on.
    virtual bool close(const RunningApplication& application) = 0;
};

} // namespace Platform
