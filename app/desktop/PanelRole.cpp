#include "app/desktop/PanelRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace DeskSprites {

namespace {

constexpr const char* roleProperty = "panelRole";

QAccessibleInterface* makeWithRole(const QString&, QObject* object) {
    const QVariant role = object->property(roleProperty);
    return role.isValid() ? new QAccessibleWidget(static_cast<QWidget*>(object),
                                                  static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

} // namespace

void announceAs(QWidget& widget, QAccessible::Role role) {
    // Qt keeps one entry however often the same function is installed.
    QAccessible::installFactory(makeWithRole);
    widget.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace DeskSprites
