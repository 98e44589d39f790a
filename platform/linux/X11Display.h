#pragma once

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Platform {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// What xcb hands out for a request, freed with this.
template <typename T>
using X11Reply = std::unique_ptr<T, FreeReply>;

/// The atoms this program speaks of (Extended Window Manager Hints 1.5, ICCCM, and two that desktops added).
enum class X11Atom : std::size_t {
    wmTransientFor,
    netActiveWindow,
    netClientList,
    netClientListStacking,
    netCloseWindow,
    netCurrentDesktop,
    netSupportingWmCheck,
    netWmDesktop,
    netWmPid,
    netWmState,
    netWmStateAbove,
    netWmStateSkipPager,
    netWmStateSkipTaskbar,
    netWmStateSticky,
    netWmStrut,
    netWmStrutPartial,
    netWmWindowType,
    netWmWindowTypeDesktop,
    netWmWindowTypeDock,
    netWmWindowTypeUtility,
    netWorkarea,
    gtkApplicationId,
    gtkWorkareas,
    kdeDesktopFile,
    manager,
    utf8String,
    compositor, ///< _NET_WM_CM_Sn of our screen
    systemTray, ///< _NET_SYSTEM_TRAY_Sn of our screen
    count
};

/// The application's own connection to the X server, with what is asked of it again and again. Without an X
/// server (another Qt platform) `isConnected` is false, requests are not made, and every answer is empty.
class X11Display {
public:
    X11Display();

    bool isConnected() const { return connection_ != nullptr; }
    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(X11Atom atom) const { return atoms_.at(static_cast<std::size_t>(atom)); }
    /// The first event number of an extension, or 0 without it.
    std::uint8_t firstEvent(const char* extension) const;

    /// A property of 32-bit values; empty when there is none of that type.
    std::vector<std::uint32_t> values(xcb_window_t window, X11Atom property, xcb_atom_t type) const;
    /// A property of bytes; empty when there is none.
    std::string bytes(xcb_window_t window, xcb_atom_t property) const;
    std::string bytes(xcb_window_t window, X11Atom property) const { return bytes(window, atom(property)); }
    void setValues(xcb_window_t window, X11Atom property, xcb_atom_t type,
                   const std::vector<std::uint32_t>& values) const;
    /// Sends a message about `window` to the window manager.
    void messageRoot(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data) const;

    bool hasOwner(X11Atom selection) const;
    bool hasWindowManager() const;

private:
    void internAtoms(int screenNumber);

    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = XCB_NONE;
    std::array<xcb_atom_t, static_cast<std::size_t>(X11Atom::count)> atoms_{};
};

/// Shows every X event of the application's connection to a handler, before Qt sees it, while this object
/// lives.
class X11EventFilter final : public QAbstractNativeEventFilter {
public:
    explicit X11EventFilter(std::function<void(const xcb_generic_event_t&)> handler);
    ~X11EventFilter() override;
    X11EventFilter(const X11EventFilter&) = delete;
    X11EventFilter& operator=(const X11EventFilter&) = delete;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    std::function<void(const xcb_generic_event_t&)> handler_;
};

/// The number of an event without the mark of events that were sent by a client.
inline std::uint8_t x11EventNumber(const xcb_generic_event_t& event) {
    return event.response_type & 0x7f;
}

/// The same bytes as the event of its kind; the caller has looked at the number.
template <typename Event>
const Event& x11Event(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

} // namespace Platform
