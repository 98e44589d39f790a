#include "app/desktop/PanelPressable.h"

#include <QKeyEvent>

namespace DeskSprites {

void PanelPressable::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    QAbstractButton::focusInEvent(event);
}

void PanelPressable::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    QAbstractButton::focusOutEvent(event);
}

void PanelPressable::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) {
            click();
        }
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->ignore();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace DeskSprites
