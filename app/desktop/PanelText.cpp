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
    QLabel::changeEvent(event);
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
