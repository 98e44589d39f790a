#include "platform/BubbleWindow.h"

#include "platform/ScreenSpace.h"
#include "platform/linux/X11Display.h"

#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace Platform {
namespace {

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
constexpr std::uint32_t stateAdd = 1;
constexpr std::uint32_t fromApplication = 1;

/// Keeps a bubble's hints in place: window managers take `_NET_WM_STATE` away whenever a window is hidden, so
/// it is written again before each show, and what some of them only hear once a window is there is sent again
/// then.
class BubbleHints final : public QObject {
public:
    explicit BubbleHints(QWidget& window) : QObject(&window), widget_(window) {
        widget_.installEventFilter(this);
        widget_.windowHandle()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == &widget_ && event->type() == QEvent::Show)
            writeHints();
        else if (event->type() == QEvent::Expose && std::exchange(fresh_, false))
            repeatHints();
        return false;
    }

    void writeHints() {
        if (!display_.isConnected())
            return;
        const auto id = static_cast<xcb_window_t>(widget_.winId());
        display_.setValues(
            id, X11Atom::netWmState, XCB_ATOM_ATOM,
            {display_.atom(X11Atom::netWmStateSticky), display_.atom(X11Atom::netWmStateSkipTaskbar),
             display_.atom(X11Atom::netWmStateSkipPager), display_.atom(X11Atom::netWmStateAbove)});
        display_.setValues(id, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL, {everyDesktop});
        display_.setValues(id, X11Atom::netWmWindowType, XCB_ATOM_ATOM,
                           {display_.atom(X11Atom::netWmWindowTypeUtility)});
        fresh_ = true;
    }

private:
    void repeatHints() {
        const auto id = static_cast<xcb_window_t>(widget_.winId());
        display_.messageRoot(id, X11Atom::netWmDesktop, {everyDesktop, fromApplication, 0, 0, 0});
        display_.messageRoot(id, X11Atom::netWmState,
                             {stateAdd, display_.atom(X11Atom::netWmStateSkipTaskbar),
                              display_.atom(X11Atom::netWmStateSkipPager), fromApplication, 0});
    }

    QWidget& widget_;
    X11Display display_;
    bool fresh_ = false;
};

} // namespace

void prepareBubbleWindow(QWidget& window, BubbleKeyboard keyboard) {
    Qt::WindowFlags flags =
        Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
    if (keyboard == BubbleKeyboard::never)
        flags |= Qt::WindowDoesNotAcceptFocus;
    window.setWindowFlags(flags);
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    // A tool window would vanish with the last normal one, and this program has none.
    window.setAttribute(Qt::WA_QuitOnClose, false);
    window.winId();
    (new BubbleHints(window))->writeHints();
}

void placeWindow(QWidget& window, const FellowCore::Rect& frame) {
    if (!frame.isFinite())
        return;
    if (frame.isEmpty()) {
        const FellowCore::Size own{static_cast<double>(window.width()), static_cast<double>(window.height())};
        window.move(toQt(FellowCore::Rect{frame.x, frame.y, own.width, own.height}).topLeft());
    } else {
        window.setGeometry(toQt(frame));
    }
}

FellowCore::Rect windowFrame(const QWidget& window) {
    return fromQt(QRectF(window.geometry()));
}

void activateBubbleWindow(QWidget& window) {
    window.raise();
    window.activateWindow();
}

} // namespace Platform
