#pragma once

#include <functional>
#include <optional>
#include <string>

namespace Platform {

/// An application by the window it shows.
struct RunningApplication {
    unsigned long long window = 0; ///< the window system's number
    long pid = 0;                  ///< 0 when the window does not tell, or one of another machine
    std::string windowClass;       ///< the application's part of WM_CLASS, "Firefox-esr"
    std::string windowInstance;    ///< the window's part of WM_CLASS
    /// The application's desktop-file id without ".desktop", when the window or its launcher tells.
    std::optional<std::string> desktopFile;
    bool isOurs = false;          ///< the window belongs to this program
    bool isPartOfDesktop = false; ///< a panel or the desktop itself: nobody works in it

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// Which application the user is working in.
class FrontmostApplication {
public:
    virtual ~FrontmostApplication() = default;

    /// The application with the active window; nothing when none is or no window manager tells. Asks the
    /// window system, which takes well under a millisecond.
    virtual std::optional<RunningApplication> current() = 0;
    /// Gives the keyboard (back) to that application's window. False when the window is gone.
    virtual bool activate(const RunningApplication& application) = 0;
    /// Calls `handler` on the main loop when another window became active, until an empty one is set. Nothing
    /// is watched while no handler is set.
    virtual void setOnChange(std::function<void()> handler) = 0;
};

} // namespace Platform
