#include "platform/linux/X11Display.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <qguiapplication_platform.h>

#include <cstring>

namespace Platform {
namespace {

constexpr std::array<const char*, static_cast<std::size_t>(X11Atom::compositor)> atomNames = {
    "WM_TRANSIENT_FOR",
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CLOSE_WINDOW",
    "_NET_CURRENT_DESKTOP",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_DESKTOP",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_STRUT",
    "_NET_WM_STRUT_PARTIAL",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_NET_WORKAREA",
    "_GTK_APPLICATION_ID",
    "_GTK_WORKAREAS_D0",
    "_KDE_NET_WM_DESKTOP_FILE",
    "MANAGER",
    "UTF8_STRING",
};

/// Properties longer than this are cut; in 32-bit units.
constexpr std::uint32_t propertyLimit = 16384;

int defaultScreenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (!xcb_parse_display(nullptr, &host, &display, &screen))
        return 0;
    std::free(host);
    return screen;
}

X11Reply<xcb_get_property_reply_t> property(xcb_connection_t* connection, xcb_window_t window,
                                            xcb_atom_t name, xcb_atom_t type) {
    const auto cookie = xcb_get_property_unchecked(connection, 0, window, name, type, 0, propertyLimit);
    return X11Reply<xcb_get_property_reply_t>(xcb_get_property_reply(connection, cookie, nullptr));
}

} // namespace

X11Display::X11Display() {
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return;
    connection_ = x11->connection();
    int number = defaultScreenNumber();
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    if (number >= screens.rem)
        number = 0;
    for (int i = 0; i < number; ++i)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
    internAtoms(number);
}

void X11Display::internAtoms(int screenNumber) {
    std::array<std::string, static_cast<std::size_t>(X11Atom::count)> names;
    std::copy(atomNames.begin(), atomNames.end(), names.begin());
    names.at(static_cast<std::size_t>(X11Atom::compositor)) = "_NET_WM_CM_S" + std::to_string(screenNumber);
    names.at(static_cast<std::size_t>(X11Atom::systemTray)) =
        "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber);
    // All requests go out before the first answer is waited for: one round trip instead of two dozen.
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies;
    for (std::size_t i = 0; i < names.size(); ++i)
        cookies[i] = xcb_intern_atom_unchecked(connection_, 0, static_cast<std::uint16_t>(names[i].size()),
                                               names[i].c_str());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const X11Reply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection_, cookies[i], nullptr));
        atoms_[i] = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }
}

std::uint8_t X11Display::firstEvent(const char* extension) const {
    if (!connection_)
        return 0;
    const auto cookie = xcb_query_extension_unchecked(
        connection_, static_cast<std::uint16_t>(std::strlen(extension)), extension);
    const X11Reply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection_, cookie, nullptr));
    return reply && reply->present ? reply->first_event : std::uint8_t{0};
}

std::vector<std::uint32_t> X11Display::values(xcb_window_t window, X11Atom name, xcb_atom_t type) const {
    if (!connection_)
        return {};
    const auto reply = property(connection_, window, atom(name), type);
    if (!reply || reply->type != type || reply->format != 32)
        return {};
    const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {begin, begin + reply->value_len};
}

std::string X11Display::bytes(xcb_window_t window, xcb_atom_t name) const {
    if (!connection_)
        return {};
    const auto reply = property(connection_, window, name, XCB_GET_PROPERTY_TYPE_ANY);
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

void X11Display::setValues(xcb_window_t window, X11Atom name, xcb_atom_t type,
                           const std::vector<std::uint32_t>& values) const {
    if (connection_)
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
}

void X11Display::messageRoot(xcb_window_t window, X11Atom message,
                             const std::array<std::uint32_t, 5>& data) const {
    if (!connection_)
        return;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy(data.begin(), data.end(), event.data.data32);
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection_);
}

bool X11Display::hasOwner(X11Atom selection) const {
    if (!connection_)
        return false;
    const auto cookie = xcb_get_selection_owner_unchecked(connection_, atom(selection));
    const X11Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_, cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

bool X11Display::hasWindowManager() const {
    // A manager that went away leaves its mark on the root; its own window must exist and carry the same
    // mark.
    const auto check = values(root_, X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW);
    return !check.empty() && values(check[0], X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW) == check;
}

X11EventFilter::X11EventFilter(std::function<void(const xcb_generic_event_t&)> handler)
    : handler_(std::move(handler)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11EventFilter::~X11EventFilter() {
    if (auto* application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

bool X11EventFilter::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type == "xcb_generic_event_t")
        handler_(*static_cast<const xcb_generic_event_t*>(message));
    return false;
}

} // namespace Platform
