#include "platform/linux/X11DesktopSurface.h"

#include "platform/ScreenSpace.h"
#include "platform/linux/X11SurfaceWindow.h"

namespace Platform {

X11DesktopSurface::X11DesktopSurface(const X11Display& display, X11Compositor& compositor,
                                     DesktopSurfaceClient& client)
    : display_(display), compositor_(compositor), shape_(display), window_(new X11SurfaceWindow(client)) {
    shape_.setTranslucent(compositor_.isRunning());
    QObject::connect(&compositor_, &X11Compositor::changed, window_, [this] {
        shape_.setTranslucent(compositor_.isRunning());
        window_->update();
    });
    QObject::connect(window_, &X11SurfaceWindow::scaleChanged, window_,
                     [this](double scale) { shape_.setScale(scale); });
}

X11DesktopSurface::~X11DesktopSurface() {
    // The window may outlive this object by one turn of the loop; its signals must not reach back.
    QObject::disconnect(&compositor_, nullptr, window_, nullptr);
    QObject::disconnect(window_, &X11SurfaceWindow::scaleChanged, window_, nullptr);
    window_->retire();
}

void X11DesktopSurface::setFrame(const FellowCore::Rect& frame) {
    if (frame.isFinite() && !frame.isEmpty())
        window_->setGeometry(toQt(frame));
}

FellowCore::Rect X11DesktopSurface::frame() const {
    return fromQt(QRectF(window_->geometry()));
}

void X11DesktopSurface::setInputRegion(std::vector<QRectF> region) {
    shape_.setRegion(std::move(region));
}

void X11DesktopSurface::setInputWhole(bool whole) {
    shape_.setWhole(whole);
}

void X11DesktopSurface::setAcceptsText(bool accepts) {
    window_->setAcceptsText(accepts);
}

void X11DesktopSurface::setCursor(Qt::CursorShape shape) {
    window_->setCursor(shape);
}

void X11DesktopSurface::createWindow() {
    window_->create();
    shape_.setScale(window_->devicePixelRatio());
    if (display_.isConnected())
        shape_.attach(static_cast<xcb_window_t>(window_->winId()));
}

void X11DesktopSurface::show() {
    // The region stands before the window can be seen, so that no click is caught by what is transparent.
    if (!window_->handle())
        createWindow();
    window_->show();
}

void X11DesktopSurface::hide() {
    window_->hide();
    window_->endPointer();
}

bool X11DesktopSurface::isVisible() const {
    return window_->isVisible();
}

void X11DesktopSurface::raise() {
    if (!window_->handle() || !display_.isConnected())
        return;
    // Qt's own raise is a request to a window manager, and none looks after this window.
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(display_.connection(), static_cast<xcb_window_t>(window_->winId()),
                         XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(display_.connection());
}

void X11DesktopSurface::update() {
    window_->update();
}

void X11DesktopSurface::update(const QRect& part) {
    window_->update(part);
}

double X11DesktopSurface::backingScale() const {
    return window_->devicePixelRatio();
}

unsigned long long X11DesktopSurface::windowId() const {
    return window_->handle() ? window_->winId() : 0;
}

void X11DesktopSurface::setAccessible(const QString& name, const QString& value, const QString& description) {
    window_->setLabel({name, value, description});
}

} // namespace Platform
