#include "platform/linux/X11FrontmostApplication.h"

#include <QTimer>

#include <fstream>
#include <string_view>
#include <unistd.h>

namespace Platform {
namespace {

constexpr std::uint32_t sourcePager = 2;
constexpr std::size_t environmentLimit = 1 << 20;

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find_first_of(std::string("\n\0", 2)));
}

/// "/usr/share/applications/org.mozilla.firefox.desktop" or an id, as an id.
std::optional<std::string> desktopId(std::string name) {
    name = firstLine(name);
    if (const auto slash = name.rfind('/'); slash != std::string::npos)
        name.erase(0, slash + 1);
    if (name.ends_with(".desktop"))
        name.erase(name.size() - std::string(".desktop").size());
    return name.empty() ? std::nullopt : std::optional(name);
}

/// What the launcher left in the environment of a process it started itself (GLib's launch context).
std::optional<std::string> launchedDesktopFile(long pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/environ", std::ios::binary);
    std::string desktopFile;
    std::string startedPid;
    std::string entry;
    for (std::size_t seen = 0; seen < environmentLimit && std::getline(file, entry, '\0');
         seen += entry.size() + 1) {
        constexpr std::string_view fileKey = "GIO_LAUNCHED_DESKTOP_FILE=";
        constexpr std::string_view pidKey = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
        if (entry.starts_with(fileKey))
            desktopFile = entry.substr(fileKey.size());
        else if (entry.starts_with(pidKey))
            startedPid = entry.substr(pidKey.size());
    }
    // A child inherits the variables of its parent; the number says whose they are.
    return startedPid == std::to_string(pid) ? desktopId(desktopFile) : std::nullopt;
}

} // namespace

xcb_window_t X11FrontmostApplication::activeWindow() const {
    const auto active = display_.values(display_.root(), X11Atom::netActiveWindow, XCB_ATOM_WINDOW);
    return active.empty() ? static_cast<xcb_window_t>(XCB_NONE) : active[0];
}

std::optional<RunningApplication> X11FrontmostApplication::current() {
    const xcb_window_t window = activeWindow();
    if (window == XCB_NONE)
        return std::nullopt;
    RunningApplication made;
    made.window = window;
    const auto pid = display_.values(window, X11Atom::netWmPid, XCB_ATOM_CARDINAL);
    made.pid = pid.empty() ? 0 : static_cast<long>(pid[0]);
    made.isOurs = made.pid == static_cast<long>(getpid());
    // WM_CLASS is two texts, each with a zero at its end: instance, then class.
    const std::string names = display_.bytes(window, XCB_ATOM_WM_CLASS);
    const auto end = names.find('\0');
    made.windowInstance = names.substr(0, end);
    if (end != std::string::npos)
        made.windowClass = names.substr(end + 1, names.find('\0', end + 1) - end - 1);
    made.desktopFile = desktopId(display_.bytes(window, X11Atom::kdeDesktopFile));
    if (!made.desktopFile)
        made.desktopFile = desktopId(display_.bytes(window, X11Atom::gtkApplicationId));
    if (!made.desktopFile && made.pid > 0)
        made.desktopFile = launchedDesktopFile(made.pid);
    return made;
}

bool X11FrontmostApplication::activate(const RunningApplication& application) {
    if (!display_.isConnected())
        return false;
    const auto window = static_cast<xcb_window_t>(application.window);
    const auto cookie = xcb_get_window_attributes_unchecked(display_.connection(), window);
    const X11Reply<xcb_get_window_attributes_reply_t> there(
        xcb_get_window_attributes_reply(display_.connection(), cookie, nullptr));
    if (!there)
        return false;
    if (display_.hasWindowManager()) {
        // As a pager would, on the user's behalf: a request of our own would be held back as focus stealing.
        display_.messageRoot(window, X11Atom::netActiveWindow,
                             {sourcePager, XCB_CURRENT_TIME, XCB_NONE, 0, 0});
        return true;
    }
    if (there->map_state != XCB_MAP_STATE_VIEWABLE)
        return false;
    xcb_set_input_focus(display_.connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(display_.connection());
    return true;
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
