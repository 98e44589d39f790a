#pragma once

#include <QColor>
#include <QRect>
#include <QStringList>

#include <xcb/xcb.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Testing {

/// Another program on the same desktop, with an X connection of its own: its windows stand below ours, its
/// keys may be taken, and it can look at what the server really has. Coordinates are pixels, y down.
class OtherProgram {
public:
    OtherProgram();
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    /// Waits until the server has done what was asked of it over this connection.
    void sync() const { (void)focusWindow(); }
    xcb_window_t root() const { return root_; }

    /// Opens a managed window filled with a colour, places it exactly and waits until it is the active one.
    xcb_window_t openWindow(const QRect& frame, QColor colour, bool fullScreen = false);
    /// Opens a panel along an edge with these values of _NET_WM_STRUT_PARTIAL.
    xcb_window_t openPanel(const QRect& frame, const std::vector<std::uint32_t>& strut);
    void setStrut(xcb_window_t panel, const std::vector<std::uint32_t>& strut);
    void closeWindow(xcb_window_t window);
    /// Button presses this program's windows have had since the last call.
    int takePresses();

    std::vector<std::uint32_t> values(xcb_window_t window, const char* property) const;
    std::vector<std::string> atomNames(xcb_window_t window, const char* property) const;
    bool listsAsClient(xcb_window_t window) const;
    xcb_window_t activeWindow() const;
    xcb_window_t focusWindow() const;
    QRect frameOf(xcb_window_t window) const;
    QColor pixel(int x, int y) const;
    /// Rectangles of a window's shape, bounding (0) or input (2).
    std::vector<QRect> shape(xcb_window_t window, std::uint8_t kind) const;

private:
    xcb_atom_t atom(const char* name) const;
    void setValues(xcb_window_t window, const char* property, xcb_atom_t type,
                   const std::vector<std::uint32_t>& values) const;
    xcb_window_t makeWindow(const QRect& frame, QColor colour);

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

/// Runs a program to its end and returns whether it succeeded; the event loop runs meanwhile.
bool run(const QString& program, const QStringList& arguments);
/// Moves the real pointer and presses real keys: `xdotool` with the words of `command`.
bool hands(const char* command);

} // namespace Testing
