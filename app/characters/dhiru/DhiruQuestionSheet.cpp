#include "app/characters/dhiru/DhiruQuestionSheet.h"

#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace DeskSprites {

namespace {

/// Lets a long path break after each of its folders.
QString breakable(const QString& text) {
    return QString(text).replace(QLatin1Char('/'), QStringLiteral("/\u200b"));
}

} // namespace

DhiruQuestionSheet::DhiruQuestionSheet(QWidget* parent)
    : QWidget(parent), title_(new PanelText(TextRole::title, this)),
      details_(new PanelText(TextRole::body, this)), body_(new PanelText(TextRole::quiet, this)),
      keep_(new PanelButton(PanelButton::Shape::row, this)),
      answer_(new PanelButton(PanelButton::Shape::row, this)), rule_(new QWidget(this)) {
    rule_->setFixedHeight(PixelFrame::pixel);
    rule_->setAutoFillBackground(true);
    answer_->setEmphasis(Emphasis::primary);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(PanelMetrics::unit);
    buttons->addWidget(keep_);
    buttons->addWidget(answer_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit);
    column->addWidget(rule_);
    for (PanelText* text : {title_, details_, body_}) {
        column->addWidget(text);
    }
    column->addLayout(buttons);
    settle_.setSingleShot(true);
    connect(&settle_, &QTimer::timeout, this, [this] { answer_->setEnabled(true); });
    connect(keep_, &QAbstractButton::clicked, this, &DhiruQuestionSheet::keep);
    connect(answer_, &QAbstractButton::clicked, this, &DhiruQuestionSheet::answer);
    hide();
}

void DhiruQuestionSheet::setDialoguePalette(const DialoguePalette& palette) {
    for (PanelText* text : {title_, details_, body_}) {
        text->setDialoguePalette(palette);
    }
    keep_->setDialoguePalette(palette);
    answer_->setDialoguePalette(palette);
    QPalette own;
    own.setColor(QPalette::Window, palette.line());
    rule_->setPalette(own);
}

void DhiruQuestionSheet::ask(const DhiruQuestion& question) {
    question_ = question;
    gone_ = false;
    title_->setText(question.title);
    details_->setText(breakable(question.details));
    details_->setAccessibleName(question.details);
    details_->show();
    body_->setText(question.body);
    keep_->setTitle(tr("Keep"));
    answer_->setTitle(question.answer);
    answer_->setAccessibleName(tr("%1, %2").arg(question.title, question.answer));
    answer_->show();
    answer_->setEnabled(false);
    settle_.start(QApplication::doubleClickInterval());
    show();
    keep_->setFocus(Qt::TabFocusReason);
    QAccessibleEvent alert(title_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void DhiruQuestionSheet::tellGone() {
    if (std::exchange(gone_, true)) {
        return;
    }
    const bool had = answer_->hasFocus();
    title_->setText(question_->gone);
    details_->hide();
    body_->setText(tr("Nothing was done."));
    answer_->hide();
    keep_->setTitle(tr("OK"));
    if (had) {
        keep_->setFocus(Qt::TabFocusReason);
    }
    QAccessibleEvent alert(title_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void DhiruQuestionSheet::answer() {
    if (question_ && !gone_) {
        close().onAnswer();
    }
}

void DhiruQuestionSheet::keep() {
    if (question_) {
        close();
    }
}

DhiruQuestion DhiruQuestionSheet::close() {
    DhiruQuestion closed = *std::exchange(question_, std::nullopt);
    settle_.stop();
    hide();
    onClosed(closed);
    return closed;
}

QString DhiruQuestionSheet::said() const {
    QStringList said{title_->text()};
    if (!gone_) {
        said << question_->details;
    }
    return (said << body_->text()).join(QLatin1Char('\n'));
}

} // namespace DeskSprites
