#include "tests/support/OtherProgram.h"

#include "tests/support/Waiting.h"

#include <QProcess>

#include <xcb/shape.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace Testing {
namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

} // namespace

OtherProgram::OtherProgram() : connection_(xcb_connect(nullptr, nullptr)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

OtherProgram::~OtherProgram() {
    // The window manager notices in its own time; the next test starts on a settled desktop.
    xcb_disconnect(connection_);
    runFor(30);
}

xcb_atom_t OtherProgram::atom(const char* name) const {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    return Reply<xcb_intern_atom_reply_t>(xcb_intern_atom_reply(connection_, cookie, nullptr))->atom;
}

void OtherProgram::setValues(xcb_window_t window, const char* property, xcb_atom_t type,
                             const std::vector<std::uint32_t>& values) const {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

xcb_window_t OtherProgram::makeWindow(const QRect& frame, QColor colour) {
    const xcb_window_t window = xcb_generate_id(connection_);
    const std::uint32_t masks[] = {colour.rgb() & 0xFFFFFFU, XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<std::int16_t>(frame.x()),
                      static_cast<std::int16_t>(frame.y()), static_cast<std::uint16_t>(frame.width()),
                      static_cast<std::uint16_t>(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, masks);
    constexpr std::uint32_t userPosition = 1;
    constexpr std::uint32_t userSize = 2;
    setValues(window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS,
              {userPosition | userSize, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    // No frame from the window manager, so that positions are what was asked for (the old Motif hint).
    setValues(window, "_MOTIF_WM_HINTS", atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0});
    const char name[] = "other\0OtherProgram";
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof name, name);
    return window;
}

xcb_window_t OtherProgram::openWindow(const QRect& frame, QColor colour, bool fullScreen) {
    const xcb_window_t window = makeWindow(frame, colour);
    if (fullScreen)
        setValues(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {atom("_NET_WM_STATE_FULLSCREEN")});
    setValues(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {1});
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
    waitUntil([&] { return activeWindow() == window; });
    return window;
}

xcb_window_t OtherProgram::openPanel(const QRect& frame, const std::vector<std::uint32_t>& strut) {
    const xcb_window_t window = makeWindow(frame, Qt::black);
    setValues(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {atom("_NET_WM_WINDOW_TYPE_DOCK")});
    setStrut(window, strut);
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
    return window;
}

void OtherProgram::setStrut(xcb_window_t panel, const std::vector<std::uint32_t>& strut) {
    setValues(panel, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, strut);
    xcb_flush(connection_);
}

void OtherProgram::closeWindow(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    xcb_flush(connection_);
}

int OtherProgram::takePresses() {
    int presses = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        if ((event->response_type & 0x7f) == XCB_BUTTON_PRESS)
            ++presses;
    }
    return presses;
}

std::vector<std::uint32_t> OtherProgram::values(xcb_window_t window, const char* property) const {
    const auto cookie =
        xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {begin, begin + reply->value_len};
}

std::vector<std::string> OtherProgram::atomNames(xcb_window_t window, const char* property) const {
    std::vector<std::string> names;
    for (const std::uint32_t value : values(window, property)) {
        const Reply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, value), nullptr));
        if (reply)
            names.emplace_back(xcb_get_atom_name_name(reply.get()),
                               static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
    }
    return names;
}

bool OtherProgram::listsAsClient(xcb_window_t window) const {
    const auto clients = values(root_, "_NET_CLIENT_LIST");
    return std::find(clients.begin(), clients.end(), window) != clients.end();
}

xcb_window_t OtherProgram::activeWindow() const {
    const auto active = values(root_, "_NET_ACTIVE_WINDOW");
    return active.empty() ? static_cast<xcb_window_t>(XCB_NONE) : active[0];
}

xcb_window_t OtherProgram::focusWindow() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply->focus;
}

QRect OtherProgram::frameOf(xcb_window_t window) const {
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

QColor OtherProgram::pixel(int x, int y) const {
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_,
                                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, nullptr));
    if (!reply)
        return {};
    const std::uint8_t* bytes = xcb_get_image_data(reply.get());
    return {bytes[2], bytes[1], bytes[0]};
}

std::vector<QRect> OtherProgram::shape(xcb_window_t window, std::uint8_t kind) const {
    const Reply<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
        connection_, xcb_shape_get_rectangles(connection_, window, kind), nullptr));
    std::vector<QRect> made;
    if (!reply)
        return made;
    const auto* rects = xcb_shape_get_rectangles_rectangles(reply.get());
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
        made.emplace_back(rects[i].x, rects[i].y, rects[i].width, rects[i].height);
    return made;
}

bool run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool ended = waitUntil([&] { return process.state() == QProcess::NotRunning; }, 10000);
    return ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool hands(const char* command) {
    return run(QStringLiteral("xdotool"), QString::fromLatin1(command).split(QLatin1Char(' ')));
}

} // namespace Testing
