#include "platform/linux/X11Screens.h"

#include "platform/ScreenSpace.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace Platform {
namespace {

/// Long enough for a monitor that is plugged in to send all its news, short enough not to be seen.
constexpr int settleMilliseconds = 60;

/// Qt scales a screen about its upper left corner, which has the same coordinates in pixels and in points.
QRect toPixels(const QScreen& screen) {
    const QRect points = screen.geometry();
    const double scale = screen.devicePixelRatio();
    return {points.x(), points.y(), static_cast<int>(std::lround(points.width() * scale)),
            static_cast<int>(std::lround(points.height() * scale))};
}

QRectF toPoints(const QRect& pixels, const QScreen& screen) {
    const QPointF origin = screen.geometry().topLeft();
    const double scale = screen.devicePixelRatio();
    return {origin + (QPointF(pixels.topLeft()) - origin) / scale, QSizeF(pixels.size()) / scale};
}

std::vector<QRect> rectangles(const std::vector<std::uint32_t>& values) {
    std::vector<QRect> made;
    for (std::size_t i = 0; i + 4 <= values.size(); i += 4)
        made.emplace_back(static_cast<int>(values[i]), static_cast<int>(values[i + 1]),
                          static_cast<int>(values[i + 2]), static_cast<int>(values[i + 3]));
    return made;
}

} // namespace

X11Screens::X11Screens(const X11Display& display)
    : display_(display), filter_([this](const xcb_generic_event_t& event) { received(event); }) {
    settle_.setSingleShot(true);
    settle_.setInterval(settleMilliseconds);
    connect(&settle_, &QTimer::timeout, this, &X11Screens::look);
    const auto later = [this] { settle_.start(); };
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        settle_.start();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, later);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, later);
    for (QScreen* screen : QGuiApplication::screens())
        watch(screen);
    findPanels();
    current_ = read();
}

void X11Screens::watch(QScreen* screen) {
    const auto later = [this] { settle_.start(); };
    connect(screen, &QScreen::geometryChanged, this, later);
    connect(screen, &QScreen::availableGeometryChanged, this, later);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, later);
}

void X11Screens::received(const xcb_generic_event_t& event) {
    if (x11EventNumber(event) != XCB_PROPERTY_NOTIFY)
        return;
    const auto& change = x11Event<xcb_property_notify_event_t>(event);
    const auto is = [&](X11Atom atom) { return change.atom == display_.atom(atom); };
    if (change.window == display_.root()) {
        if (is(X11Atom::netClientList))
            panelsChanged_ = true;
        else if (!is(X11Atom::netWorkarea) && !is(X11Atom::gtkWorkareas))
            return;
    } else if (panels_.contains(change.window) &&
               (is(X11Atom::netWmStrut) || is(X11Atom::netWmStrutPartial))) {
        panelsChanged_ = true;
    } else {
        return;
    }
    settle_.start();
}

void X11Screens::look() {
    if (std::exchange(panelsChanged_, false))
        findPanels();
    std::vector<ScreenInfo> now = read();
    if (now == current_)
        return;
    current_ = std::move(now);
    if (onChange)
        onChange();
}

void X11Screens::findPanels() {
    struts_.clear();
    if (!display_.isConnected() || !display_.hasWindowManager())
        return;
    // All questions go out before the first answer is read: two round trips for any number of windows.
    const auto windows = display_.values(display_.root(), X11Atom::netClientList, XCB_ATOM_WINDOW);
    struct Questions {
        xcb_get_property_cookie_t partial, plain, type;
    };
    const auto ask = [this](xcb_window_t window, X11Atom property, xcb_atom_t type, std::uint32_t length) {
        return xcb_get_property_unchecked(display_.connection(), 0, window, display_.atom(property), type, 0,
                                          length);
    };
    std::vector<Questions> questions;
    for (const xcb_window_t window : windows)
        questions.push_back({ask(window, X11Atom::netWmStrutPartial, XCB_ATOM_CARDINAL, 12),
                             ask(window, X11Atom::netWmStrut, XCB_ATOM_CARDINAL, 4),
                             ask(window, X11Atom::netWmWindowType, XCB_ATOM_ATOM, 8)});
    const auto answer = [this](xcb_get_property_cookie_t cookie) {
        const X11Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(display_.connection(), cookie, nullptr));
        if (!reply || reply->format != 32)
            return std::vector<std::uint32_t>();
        const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return std::vector<std::uint32_t>(begin, begin + reply->value_len);
    };
    std::set<xcb_window_t> panels;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto partial = answer(questions[i].partial);
        const auto plain = answer(questions[i].plain);
        const auto type = answer(questions[i].type);
        const auto strut = Strut::fromValues(partial.empty() ? plain : partial);
        if (strut)
            struts_.push_back(*strut);
        const bool dock =
            std::find(type.begin(), type.end(), display_.atom(X11Atom::netWmWindowTypeDock)) != type.end();
        if (strut || dock)
            panels.insert(windows[i]);
    }
    // Only panels are listened to; the titles of everyone's windows would wake us all day.
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    for (const xcb_window_t window : panels) {
        if (!panels_.contains(window))
            xcb_change_window_attributes(display_.connection(), window, XCB_CW_EVENT_MASK, &mask);
    }
    xcb_flush(display_.connection());
    panels_ = std::move(panels);
}

QRect X11Screens::workArea(const QRect& screen, std::size_t screenCount) const {
    const auto desktops = display_.values(display_.root(), X11Atom::netCurrentDesktop, XCB_ATOM_CARDINAL);
    const auto perScreen =
        rectangles(display_.values(display_.root(), X11Atom::gtkWorkareas, XCB_ATOM_CARDINAL));
    for (const QRect& area : perScreen) {
        const QRect part = area & screen;
        if (part == area && !part.isEmpty())
            return part;
    }
    // One rectangle for the whole desktop says nothing about one monitor of several.
    const auto areas = rectangles(display_.values(display_.root(), X11Atom::netWorkarea, XCB_ATOM_CARDINAL));
    const std::size_t desktop = desktops.empty() ? 0 : desktops[0];
    if (screenCount != 1 || desktop >= areas.size())
        return screen;
    const QRect part = areas[desktop] & screen;
    return part.isEmpty() ? screen : part;
}

std::vector<ScreenInfo> X11Screens::read() const {
    const QList<QScreen*> screens = QGuiApplication::screens();
    const QScreen* primary = QGuiApplication::primaryScreen();
    QSize desktop;
    bool managed = false;
    if (display_.isConnected()) {
        managed = display_.hasWindowManager();
        const auto cookie = xcb_get_geometry_unchecked(display_.connection(), display_.root());
        const X11Reply<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(display_.connection(), cookie, nullptr));
        if (reply)
            desktop = QSize(reply->width, reply->height);
    }
    std::vector<ScreenInfo> made;
    for (const QScreen* screen : screens) {
        const QRect pixels = toPixels(*screen);
        QRect free = pixels;
        if (managed)
            free = freeOfStruts(pixels, desktop, struts_) &
                   workArea(pixels, static_cast<std::size_t>(screens.size()));
        ScreenInfo info;
        info.name = screen->name().toStdString();
        info.frame = fromQt(QRectF(screen->geometry()));
        info.visibleFrame = free.isEmpty() ? info.frame : fromQt(toPoints(free, *screen));
        info.backingScale = screen->devicePixelRatio();
        info.isMain = screen == primary;
        made.insert(info.isMain ? made.begin() : made.end(), info);
    }
    return made;
}

} // namespace Platform
