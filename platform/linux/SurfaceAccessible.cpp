#include "platform/linux/SurfaceAccessible.h"

#include "platform/linux/X11SurfaceWindow.h"

#include <QGuiApplication>

namespace Platform {
namespace {

QAccessibleInterface* makeForSurface(const QString&, QObject* object) {
    auto* window = qobject_cast<X11SurfaceWindow*>(object);
    return window ? new SurfaceAccessible(*window) : nullptr;
}

} // namespace

SurfaceAccessible::SurfaceAccessible(X11SurfaceWindow& window) : QAccessibleObject(&window) {}

void SurfaceAccessible::install() {
    // Qt keeps one entry however often the same function is installed.
    QAccessible::installFactory(makeForSurface);
}

X11SurfaceWindow* SurfaceAccessible::surface() const {
    return qobject_cast<X11SurfaceWindow*>(object());
}

QAccessibleInterface* SurfaceAccessible::parent() const {
    return QAccessible::queryAccessibleInterface(qApp);
}

QWindow* SurfaceAccessible::window() const {
    return surface();
}

QRect SurfaceAccessible::rect() const {
    return surface() ? surface()->geometry() : QRect();
}

QString SurfaceAccessible::text(QAccessible::Text kind) const {
    if (!surface())
        return {};
    const SurfaceLabel& label = surface()->label();
    switch (kind) {
    case QAccessible::Name:
        return label.name;
    case QAccessible::Value:
        return label.value;
    case QAccessible::Description:
        // Readers ask a button for no value, so the description carries it too.
        if (label.value.isEmpty() || label.description.isEmpty())
            return label.value + label.description;
        return label.value + QStringLiteral(". ") + label.description;
    default:
        return {};
    }
}

QAccessible::State SurfaceAccessible::state() const {
    QAccessible::State state;
    state.hasPopup = true;
    state.invisible = !surface() || !surface()->isVisible();
    return state;
}

void* SurfaceAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList SurfaceAccessible::actionNames() const {
    return {pressAction(), showMenuAction()};
}

void SurfaceAccessible::doAction(const QString& name) {
    X11SurfaceWindow* window = surface();
    if (!window || !window->isVisible())
        return;
    if (name == pressAction())
        window->accessiblePress();
    else if (name == showMenuAction())
        window->accessibleShowMenu();
}

} // namespace Platform
