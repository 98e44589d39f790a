#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QWidget>

#include <functional>
#include <vector>

class QBoxLayout;
class QSlider;

namespace DeskSprites {

/// The rhythm of every form, in points.
namespace FormMetrics {
constexpr int unit = 8;
constexpr int columnWidth = 560; ///< a form does not grow wider than this
} // namespace FormMetrics

/// Words at a multiple of the user's font size. Plain text, wraps, never a mnemonic.
enum class TextStyle { title, heading, body, help, error };
QLabel* makeText(const QString& text, TextStyle style, QWidget* parent);

/// An on and off switch. Announced as a check box.
class FormSwitch : public QCheckBox {
    Q_OBJECT
public:
    explicit FormSwitch(QWidget* parent = nullptr);
    /// Shows a state without telling anyone.
    void setQuietly(bool on);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void paintEvent(QPaintEvent* event) override;
};

/// One of several choices, in the house's pixels.
class FormRadio : public QRadioButton {
    Q_OBJECT
public:
    explicit FormRadio(const QString& words, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void paintEvent(QPaintEvent* event) override;

private:
    int side() const;
};

/// A button that looks like a link, for a place that can be opened.
class FormLink : public QPushButton {
    Q_OBJECT
public:
    explicit FormLink(QWidget* parent = nullptr);
    /// The place as it is written, and as it is announced. Shortened in the middle where room is short.
    void setTarget(const QString& words, const QString& spoken);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString words_;
};

/// A push button with room beside its words.
class FormButton : public QPushButton {
    Q_OBJECT
public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};

/// A whole number with its unit. A typed number counts when it is finished (Enter, or leaving the field),
/// steps count at once.
class NumberField : public QSpinBox {
    Q_OBJECT
public:
    /// `unitWords` gives the words after a number, such as " min".
    NumberField(int least, int most, std::function<QString(int)> unitWords, QWidget* parent = nullptr);
    void setQuietly(int value);
    QSize sizeHint() const override;

private:
    std::function<QString(int)> unit_;
};

/// A slider with its value in words beside it.
class FormSlider : public QWidget {
    Q_OBJECT
public:
    struct Range {
        int least = 0;
        int most = 100;
        int step = 1;  ///< an arrow key
        int page = 10; ///< a page key, or a click beside the handle
    };
    FormSlider(Range range, std::function<QString(int)> words, QWidget* parent = nullptr);
    /// Shows a value without telling anyone. Ignored while the user drags.
    void setQuietly(int value);
    int value() const;
    QSlider* slider() const { return slider_; }
    QSize sizeHint() const override;

Q_SIGNALS:
    /// While the handle is dragged.
    void preview(int value);
    /// Once for each change: the end of a drag, a key, a click beside the handle.
    void chosen(int value);

private:
    void showWords(int value);

    QSlider* slider_;
    QLabel* words_;
    std::function<QString(int)> format_;
    int dragStart_ = 0;
};

/// Buttons side by side, or one below the other when they do not fit.
class FormButtons : public QWidget {
    Q_OBJECT
public:
    explicit FormButtons(QWidget* parent = nullptr);
    /// The words are shown as they are: an ampersand is an ampersand.
    QPushButton* add(const QString& words);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::vector<int> widths() const;
    int lineWidth() const;
    void lay();

    QBoxLayout* line_;
};

/// Puts words on a button as they are: an ampersand is an ampersand.
void setWords(QAbstractButton* button, const QString& words);

} // namespace DeskSprites
