#pragma once

#include "app/settings/FormControls.h"

#include <QScrollArea>
#include <QWidget>

class QBoxLayout;
class QVBoxLayout;

namespace DeskSprites {

/// A label, its control and, below, a line of help or of error. Stacks them when the line is too narrow.
class FormRow : public QWidget {
    Q_OBJECT
public:
    FormRow(const QString& label, QWidget* control, const QString& help, QWidget* parent = nullptr);
    void setHelp(const QString& help);
    /// Shows why an edit did not take, and announces it; an empty sentence removes it.
    void setError(const QString& error);
    QString error() const;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QBoxLayout* line_;
    QLabel* label_;
    QWidget* control_;
    QLabel* help_;
    QLabel* error_;
};

/// A heading and its rows.
class FormSection : public QWidget {
    Q_OBJECT
public:
    explicit FormSection(const QString& heading, QWidget* parent = nullptr);

    /// Adds a row. The label names the control for assistive tools unless it has a name already; the help
    /// describes it.
    FormRow* addRow(const QString& label, QWidget* control, const QString& help = {});
    FormSwitch* addSwitch(const QString& label, const QString& help = {});
    NumberField* addNumber(const QString& label, int least, int most, std::function<QString(int)> unitWords,
                           const QString& help = {});
    FormSlider* addSlider(const QString& label, FormSlider::Range range, std::function<QString(int)> words,
                          const QString& help = {});
    /// The row that a control was added with.
    FormRow* rowOf(const QWidget* control) const;

private:
    QVBoxLayout* rows_;
};

/// A column of sections that scrolls when it does not fit.
class FormPage : public QScrollArea {
    Q_OBJECT
public:
    explicit FormPage(QWidget* parent = nullptr);
    void add(QWidget* widget);
    FormSection* addSection(const QString& heading);
    /// Where `add` puts things; the parent to give them.
    QWidget* column() const { return column_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* column_;
    QVBoxLayout* layout_;
};

} // namespace DeskSprites
