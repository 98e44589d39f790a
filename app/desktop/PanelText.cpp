#include "app/desktop/PanelText.h"

#include "app/desktop/PanelMetrics.h"

#include <QEvent>
#include <QGuiApplication>

namespace DeskSprites {

PanelText::PanelText(TextRole role, QWidget* parent) : QLabel(parent), role_(role) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setContentsMargins(0, 0, 0, 0);
    applyFont();
    applySide();
}

void PanelText::setDialoguePalette(const DialoguePalette& palette) {
    QPalette own;
    own.setColor(QPalette::WindowText, role_ == TextRole::quiet ? palette.quietInk() : palette.ink);
    setPalette(own);
}

void PanelText::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) {
        applyFont();
    }
    if (event->type() == QEvent::LayoutDirectionChange) {
        applySide();
    }
    QLabel::changeEvent(event);
}

void PanelText::applySide() {
    // The side of the layout, also for a sentence that runs the other way: it belongs to its neighbours.
    const Qt::Alignment side = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    setAlignment(side | Qt::AlignAbsolute | Qt::AlignVCenter);
}

void PanelText::applyFont() {
    QFont own = QGuiApplication::font();
    if (role_ == TextRole::title) {
        own = scaledFont(own, 1.15);
        own.setBold(true);
    }
    setFont(own);
}

} // namespace DeskSprites
