#include "platform/linux/X11Applications.h"

#include <algorithm>
#include <array>
#include <climits>
#include <fstream>
#include <string_view>
#include <unistd.h>
#include <xcb/res.h>

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

/// Whether a window is shown from this machine: the number that one of another tells is that of somebody
/// else's process there. Names with and without their domain are the same.
bool isFromHere(std::string machine) {
    machine = machine.substr(0, machine.find('\0'));
    std::array<char, HOST_NAME_MAX + 1> name{};
    if (machine.empty() || gethostname(name.data(), name.size() - 1) != 0)
        return true;
    const std::string here = name.data();
    return machine == here || machine.starts_with(here + ".") || here.starts_with(machine + ".");
}

/// The process whose connection made a window, as the server itself knows; nothing when the server cannot
/// say, 0 for a connection from elsewhere.
std::optional<long> connectedPid(const X11Display& display, xcb_window_t window) {
    xcb_connection_t* const server = display.connection();
    if (!display.isConnected() || !xcb_get_extension_data(server, &xcb_res_id)->present)
        return std::nullopt;
    const xcb_res_client_id_spec_t asked{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const X11Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        server, xcb_res_query_client_ids_unchecked(server, 1, &asked), nullptr));
    if (!reply)
        return std::nullopt;
    const auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    const bool told = ids.rem > 0 && xcb_res_client_id_value_value_length(ids.data) > 0;
    return told ? static_cast<long>(*xcb_res_client_id_value_value(ids.data)) : 0;
}

/// What a window says of itself is true only within its own sandbox or machine, so the server's word comes
/// first: the number may lead to a signal.
long pidOf(const X11Display& display, xcb_window_t window) {
    const auto told = display.values(window, X11Atom::netWmPid, XCB_ATOM_CARDINAL);
    if (told.empty() || !isFromHere(display.bytes(window, XCB_ATOM_WM_CLIENT_MACHINE)))
        return 0;
    return connectedPid(display, window).value_or(static_cast<long>(told[0]));
}

/// Whether it was made over our connection: the server gives each a range of numbers.
bool isOurs(const X11Display& display, xcb_window_t window) {
    if (!display.isConnected())
        return false;
    const xcb_setup_t* const setup = xcb_get_setup(display.connection());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

bool isPartOfDesktop(const X11Display& display, xcb_window_t window) {
    const auto types = display.values(window, X11Atom::netWmWindowType, XCB_ATOM_ATOM);
    return std::ranges::find(types, display.atom(X11Atom::netWmWindowTypeDesktop)) != types.end() ||
           std::ranges::find(types, display.atom(X11Atom::netWmWindowTypeDock)) != types.end();
}

X11Reply<xcb_get_window_attributes_reply_t> attributes(const X11Display& display, xcb_window_t window) {
    if (!display.isConnected())
        return {};
    const auto cookie = xcb_get_window_attributes_unchecked(display.connection(), window);
    return X11Reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes_reply(display.connection(), cookie, nullptr));
}

} // namespace

RunningApplication x11Application(const X11Display& display, xcb_window_t window) {
    RunningApplication made;
    made.window = window;
    made.pid = pidOf(display, window);
    made.isOurs = isOurs(display, window);
    made.isPartOfDesktop = isPartOfDesktop(display, window);
    // WM_CLASS is two texts, each with a zero at its end: instance, then class.
    const std::string names = display.bytes(window, XCB_ATOM_WM_CLASS);
    const auto end = names.find('\0');
    made.windowInstance = names.substr(0, end);
    if (end != std::string::npos)
        made.windowClass = names.substr(end + 1, names.find('\0', end + 1) - end - 1);
    made.desktopFile = desktopId(display.bytes(window, X11Atom::kdeDesktopFile));
    if (!made.desktopFile)
        made.desktopFile = desktopId(display.bytes(window, X11Atom::gtkApplicationId));
    if (!made.desktopFile && made.pid > 0)
        made.desktopFile = launchedDesktopFile(made.pid);
    return made;
}

bool x11WindowExists(const X11Display& display, xcb_window_t window) {
    return attributes(display, window) != nullptr;
}

bool activateX11Window(const X11Display& display, xcb_window_t window) {
    const auto there = attributes(display, window);
    if (!there)
        return false;
    if (display.hasWindowManager()) {
        // As a pager would, on the user's behalf: a request of our own would be held back as focus stealing.
        display.messageRoot(window, X11Atom::netActiveWindow,
                            {sourcePager, XCB_CURRENT_TIME, XCB_NONE, 0, 0});
        return true;
    }
    if (there->map_state != XCB_MAP_STATE_VIEWABLE)
        return false;
    xcb_set_input_focus(display.connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(display.connection());
    return true;
}

} // namespace Platform
