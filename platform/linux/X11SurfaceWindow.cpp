#include "platform/linux/X11SurfaceWindow.h"

#include "platform/ScreenSpace.h"

#include <QAccessible>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QStyleHints>

namespace Platform {

X11SurfaceWindow::X11SurfaceWindow(DesktopSurfaceClient& client) : client_(&client) {
    QSurfaceFormat translucent = format();
    translucent.setAlphaBufferSize(8);
    setFormat(translucent);
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint |
             Qt::X11BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    SurfaceAccessible::install();
    hover_.onEnter = [this] {
        tell([this](auto& to) { to.pointerEntered(pointerEvent(hoverWindow_, hoverGlobal_)); });
    };
    hover_.onLeave = [this] { tell([](auto& to) { to.pointerLeft(); }); };
    connect(this, &QWindow::screenChanged, this, &X11SurfaceWindow::checkScale);
}

template <typename Call>
void X11SurfaceWindow::tell(const Call& call) {
    if (!client_)
        return;
    ++callDepth_;
    call(*client_);
    --callDepth_;
}

void X11SurfaceWindow::retire() {
    client_ = nullptr;
    hide();
    // Qt must not lose a window in the middle of handing it an event.
    if (callDepth_ > 0)
        deleteLater();
    else
        delete this;
}

void X11SurfaceWindow::setLabel(const SurfaceLabel& label) {
    const SurfaceLabel old = std::exchange(label_, label);
    if (old.name != label_.name)
        setTitle(label_.name);
    if (!QAccessible::isActive())
        return;
    const auto announce = [this](QAccessible::Event kind) {
        QAccessibleEvent event(this, kind);
        QAccessible::updateAccessibility(&event);
    };
    if (old.name != label_.name)
        announce(QAccessible::NameChanged);
    if (old.value != label_.value || old.description != label_.description)
        announce(QAccessible::DescriptionChanged);
}

QAccessibleInterface* X11SurfaceWindow::accessibleRoot() const {
    return QAccessible::queryAccessibleInterface(const_cast<X11SurfaceWindow*>(this));
}

void X11SurfaceWindow::accessiblePress() {
    tell([](auto& to) { to.accessiblePress(); });
}

void X11SurfaceWindow::accessibleShowMenu() {
    tell([](auto& to) { to.accessibleShowMenu(); });
}

void X11SurfaceWindow::paintEvent(QPaintEvent* event) {
    // The backing store hands out this region cleared to transparent.
    QPainter painter(this);
    painter.setClipRegion(event->region());
    tell([&](auto& to) { to.paint(painter, QSizeF(size())); });
}

bool X11SurfaceWindow::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::Enter: {
        const auto* enter = static_cast<QEnterEvent*>(event);
        hoverWindow_ = enter->position();
        hoverGlobal_ = enter->globalPosition();
        if (held_ && QGuiApplication::mouseButtons() == Qt::NoButton)
            endPointer(); // The release went elsewhere.
        hover_.entered(hoverGlobal_);
        break;
    }
    case QEvent::Leave:
        hover_.left(QCursor::pos());
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return dragEvent(*event);
    case QEvent::Expose:
        checkScale();
        break;
    default:
        break;
    }
    return QRasterWindow::event(event);
}

PointerEvent X11SurfaceWindow::pointerEvent(QPointF window, QPointF global) const {
    PointerEvent made;
    made.screen = fromQt(global);
    made.window = {window.x(), height() - window.y()};
    made.held = held_;
    made.modifiers = QGuiApplication::keyboardModifiers();
    return made;
}

PointerEvent X11SurfaceWindow::pointerEvent(const QMouseEvent& event) const {
    PointerEvent made = pointerEvent(event.position(), event.globalPosition());
    made.held = event.buttons();
    made.modifiers = event.modifiers();
    if (event.type() != QEvent::MouseMove) {
        made.button = event.button();
        made.clickCount = clickCount_;
    }
    return made;
}

void X11SurfaceWindow::countClick(const QMouseEvent& event) {
    const auto* hints = QGuiApplication::styleHints();
    const QPointF away = event.globalPosition() - clickAt_;
    const bool again =
        clickCount_ > 0 && event.button() == clickButton_ &&
        event.timestamp() - clickTime_ <= static_cast<quint64>(hints->mouseDoubleClickInterval()) &&
        away.manhattanLength() <= hints->mouseDoubleClickDistance();
    clickCount_ = again ? clickCount_ + 1 : 1;
    clickButton_ = event.button();
    clickAt_ = event.globalPosition();
    clickTime_ = event.timestamp();
}

void X11SurfaceWindow::setHeld(Qt::MouseButtons held) {
    held_ = held;
    hover_.setHeld(held != Qt::NoButton);
}

void X11SurfaceWindow::mousePressEvent(QMouseEvent* event) {
    hoverWindow_ = event->position();
    hoverGlobal_ = event->globalPosition();
    hover_.moved(hoverGlobal_);
    if (event->button() == Qt::RightButton) {
        tell([&](auto& to) { to.contextMenuRequested(fromQt(event->globalPosition())); });
        return;
    }
    countClick(*event);
    setHeld(event->buttons() & ~Qt::MouseButtons(Qt::RightButton));
    tell([&](auto& to) { to.pointerPressed(pointerEvent(*event)); });
}

void X11SurfaceWindow::mouseMoveEvent(QMouseEvent* event) {
    if (held_ && event->buttons() == Qt::NoButton)
        endPointer();
    hoverWindow_ = event->position();
    hoverGlobal_ = event->globalPosition();
    hover_.moved(hoverGlobal_);
    tell([&](auto& to) { to.pointerMoved(pointerEvent(*event)); });
}

void X11SurfaceWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton || !(held_ & event->button()))
        return;
    hoverWindow_ = event->position();
    hoverGlobal_ = event->globalPosition();
    held_ &= ~Qt::MouseButtons(event->button());
    tell([&](auto& to) { to.pointerReleased(pointerEvent(*event)); });
    setHeld(held_);
}

void X11SurfaceWindow::endPointer() {
    if (held_) {
        held_ = Qt::NoButton;
        tell([](auto& to) { to.pointerCancelled(); });
    }
    clickCount_ = 0;
    if (isVisible())
        hover_.setHeld(false);
    else
        hover_.reset();
}

void X11SurfaceWindow::wheelEvent(QWheelEvent* event) {
    WheelEvent made;
    made.screen = fromQt(event->globalPosition());
    made.window = {event->position().x(), height() - event->position().y()};
    made.angleDelta = event->angleDelta();
    made.modifiers = event->modifiers();
    tell([&](auto& to) { to.wheelTurned(made); });
}

bool X11SurfaceWindow::dragEvent(QEvent& event) {
    auto& drop = static_cast<QDropEvent&>(event);
    if (!acceptsText_ || !drop.mimeData()->hasText()) {
        drop.ignore();
        return true;
    }
    // The text is taken as a copy: what was dragged stays where it was.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (event.type() == QEvent::Drop)
        tell([text = drop.mimeData()->text()](auto& to) { to.textDropped(text); });
    return true;
}

void X11SurfaceWindow::checkScale() {
    const double scale = devicePixelRatio();
    if (scale == scale_)
        return;
    const bool first = scale_ == 0;
    scale_ = scale;
    Q_EMIT scaleChanged(scale);
    update();
    if (!first)
        tell([scale](auto& to) { to.backingScaleChanged(scale); });
}

} // namespace Platform
