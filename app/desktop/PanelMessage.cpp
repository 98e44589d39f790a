#include "app/desktop/PanelMessage.h"

#include "app/desktop/PanelControls.h"

#include <QAccessible>
#include <QHBoxLayout>

namespace DeskSprites {

PanelMessage::PanelMessage(QWidget* parent)
    : QWidget(parent), text_(new PanelText(TextRole::quiet, this)), button_(new PanelButton) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(PanelMetrics::halfUnit, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    line->addWidget(text_, 1);
    line->addWidget(button_);
    button_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(button_, &QAbstractButton::clicked, this, [this] {
        const auto press = press_; // a copy, because the call may set another
        press();
    });
    setNoButton();
    hide();
}

void PanelMessage::setDialoguePalette(const DialoguePalette& palette) {
    text_->setDialoguePalette(palette);
    button_->setDialoguePalette(palette);
}

void PanelMessage::setButton(const QString& title, std::function<void()> press) {
    press_ = std::move(press);
    button_->setTitle(title);
    button_->show();
}

void PanelMessage::setNoButton() {
    button_->hide();
}

void PanelMessage::say(const QString& sentence) {
    if (sentence == text_->text()) {
        return;
    }
    text_->setText(sentence);
    setVisible(!sentence.isEmpty());
    if (!sentence.isEmpty()) {
        text_->setAccessibleName(sentence);
        QAccessibleEvent alert(text_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QString PanelMessage::sentence() const {
    return text_->text();
}

QWidget* PanelMessage::button() const {
    return button_;
}

} // namespace DeskSprites
