#include "app/settings/FormKit.h"

#include <QAccessible>
#include <QResizeEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int unit = FormMetrics::unit;

/// A composite hands name and description on to the part that takes the focus.
QWidget* spokenPart(QWidget* control) {
    return control->focusProxy() != nullptr ? control->focusProxy() : control;
}

void nameControl(QWidget* control, const QString& label, const QString& help) {
    QWidget* spoken = spokenPart(control);
    if (spoken->accessibleName().isEmpty()) {
        spoken->setAccessibleName(label);
    }
    if (!help.isEmpty()) {
        spoken->setAccessibleDescription(help);
    }
}

} // namespace

FormRow::FormRow(const QString& label, QWidget* control, const QString& help, QWidget* parent)
    : QWidget(parent), line_(new QHBoxLayout), label_(makeText(label, TextStyle::body, this)),
      control_(control), help_(makeText(help, TextStyle::help, this)),
      error_(makeText({}, TextStyle::error, this)) {
    nameControl(control, label, help);
    help_->setVisible(!help.isEmpty());
    error_->hide();

    line_->setSpacing(unit);
    line_->addWidget(label_, 1);
    line_->addWidget(control_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(unit / 4);
    column->addLayout(line_);
    column->addWidget(help_);
    column->addWidget(error_);
}

void FormRow::setHelp(const QString& help) {
    help_->setText(help);
    help_->setVisible(!help.isEmpty());
    spokenPart(control_)->setAccessibleDescription(help);
}

void FormRow::setError(const QString& error) {
    error_->setText(error);
    error_->setVisible(!error.isEmpty());
    if (error.isEmpty()) {
        return;
    }
    QAccessibleEvent alert(error_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString FormRow::error() const {
    return error_->text();
}

QSize FormRow::minimumSizeHint() const {
    // Whichever way the line lies now, it could be stacked.
    const QSize own = QWidget::minimumSizeHint();
    return {std::max(control_->minimumSizeHint().width(), 12 * unit), own.height()};
}

void FormRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QFontMetrics metrics(label_->font());
    const int wanted = metrics.horizontalAdvance(label_->text()) + unit + control_->sizeHint().width();
    const auto direction = wanted > width() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    if (line_->direction() == direction) {
        return;
    }
    line_->setDirection(direction);
    line_->setAlignment(control_, direction == QBoxLayout::TopToBottom ? Qt::AlignLeading : Qt::Alignment());
    updateGeometry();
}

FormSection::FormSection(const QString& heading, QWidget* parent)
    : QWidget(parent), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(unit + unit / 2);
    if (!heading.isEmpty()) {
        rows_->addWidget(makeText(heading, TextStyle::heading, this));
    }
}

FormRow* FormSection::addRow(const QString& label, QWidget* control, const QString& help) {
    auto* row = new FormRow(label, control, help, this);
    rows_->addWidget(row);
    return row;
}

FormSwitch* FormSection::addSwitch(const QString& label, const QString& help) {
    auto* control = new FormSwitch(this);
    addRow(label, control, help);
    return control;
}

NumberField* FormSection::addNumber(const QString& label, int least, int most,
                                    std::function<QString(int)> unitWords, const QString& help) {
    auto* control = new NumberField(least, most, std::move(unitWords), this);
    addRow(label, control, help);
    return control;
}

FormSlider* FormSection::addSlider(const QString& label, FormSlider::Range range,
                                   std::function<QString(int)> words, const QString& help) {
    auto* control = new FormSlider(range, std::move(words), this);
    addRow(label, control, help);
    return control;
}

FormRow* FormSection::rowOf(const QWidget* control) const {
    return qobject_cast<FormRow*>(control->parentWidget());
}

FormPage::FormPage(QWidget* parent)
    : QScrollArea(parent), column_(new QWidget(this)), layout_(new QVBoxLayout(column_)) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    verticalScrollBar()->setAccessibleName(tr("Scroll"));
    horizontalScrollBar()->setAccessibleName(tr("Scroll sideways"));
    layout_->setSpacing(3 * unit);
    layout_->addStretch();
    setWidget(column_);
}

void FormPage::add(QWidget* widget) {
    layout_->insertWidget(layout_->count() - 1, widget);
}

FormSection* FormPage::addSection(const QString& heading) {
    auto* section = new FormSection(heading, column_);
    add(section);
    return section;
}

void FormPage::resizeEvent(QResizeEvent* event) {
    // The column keeps a readable width and stands beside the list; what is over is margin at the far side.
    const int margin = 3 * unit;
    const int textColumn = std::max(FormMetrics::columnWidth, 46 * fontMetrics().averageCharWidth() * 2);
    const int rest = std::max(0, viewport()->width() - 2 * margin - textColumn);
    const bool mirrored = isRightToLeft();
    layout_->setContentsMargins(margin + (mirrored ? rest : 0), margin, margin + (mirrored ? 0 : rest),
                                margin);
    QScrollArea::resizeEvent(event);
}

} // namespace DeskSprites
