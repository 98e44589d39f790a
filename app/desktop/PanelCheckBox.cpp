#include "app/desktop/PanelCheckBox.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelMap.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int boxSide = 9 * pixel;
constexpr int padding = PanelMetrics::halfUnit; // at the sides
constexpr int above = 7;                        // and below, which makes a row as high as a control
constexpr int textLeft = padding + boxSide + PanelMetrics::unit;
constexpr int leastWidth = 120;
constexpr std::array<std::string_view, 5> tick = {"......#", ".....##", "#...##.", "##.##..", ".###..."};

int evenUp(int length) {
    return length + length % 2;
}

/// Breaks the lines of `layout` and returns how high they are together.
int breakLines(QTextLayout& layout, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    double y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, y});
        y += line.height();
    }
    layout.endLayout();
    return static_cast<int>(std::ceil(y));
}
} // namespace

PanelCheckBox::PanelCheckBox(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void PanelCheckBox::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void PanelCheckBox::setTitle(const QString& title) {
    if (title == title_) {
        return;
    }
    title_ = title;
    // The base class names the button to assistive tools, and would take an ampersand for a mnemonic.
    setText(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
    relay();
}

void PanelCheckBox::setDetail(const QString& detail) {
    if (detail != detail_) {
        detail_ = detail;
        setAccessibleDescription(detail);
        relay();
    }
}

void PanelCheckBox::setMark(Mark mark) {
    if (mark != mark_) {
        mark_ = mark;
        setChecked(false);
        setCheckable(mark == Mark::box);
        QWidget::update();
    }
}

void PanelCheckBox::setStrikesChecked(bool strikes) {
    strikes_ = strikes;
    QWidget::update();
}

void PanelCheckBox::relay() {
    knownWidth_ = -1;
    updateGeometry();
    QWidget::update();
}

QFont PanelCheckBox::wordsFont() const {
    QFont own = font();
    own.setStrikeOut(strikes_ && isChecked());
    return own;
}

QFont PanelCheckBox::detailFont() const {
    return scaledFont(font(), 0.88);
}

int PanelCheckBox::wordsHeight(int width) const {
    const int room = std::max(1, width - textLeft - padding);
    if (room != knownWidth_) {
        QTextLayout layout(title_, font());
        knownHeight_ = std::max(breakLines(layout, room), QFontMetrics(font()).height());
        knownWidth_ = room;
    }
    return knownHeight_;
}

int PanelCheckBox::heightForWidth(int width) const {
    const int below = detail_.isEmpty() ? 0 : QFontMetrics(detailFont()).height();
    return evenUp(std::max(boxSide, wordsHeight(width)) + below + 2 * above);
}

QSize PanelCheckBox::sizeHint() const {
    const int wanted = textLeft + padding + QFontMetrics(font()).horizontalAdvance(title_);
    const int shown = std::min(wanted, PanelMetrics::contentWidth);
    return {shown, heightForWidth(shown)};
}

QSize PanelCheckBox::minimumSizeHint() const {
    return {leastWidth, evenUp(std::max(boxSide, QFontMetrics(font()).height()) + 2 * above)};
}

QRect PanelCheckBox::boxRect() const {
    const int line = std::max(boxSide, QFontMetrics(font()).height());
    const int left = isRightToLeft() ? width() - padding - boxSide : padding;
    return {left, above + (line - boxSide) / 2, boxSide, boxSide};
}

QRect PanelCheckBox::wordsRect() const {
    const QFontMetrics metrics(font());
    const int top = above + std::max(0, boxSide - metrics.height()) / 2;
    const int left = isRightToLeft() ? padding : textLeft;
    return {left, top, std::max(1, width() - textLeft - padding), wordsHeight(width())};
}

bool PanelCheckBox::hitButton(const QPoint& at) const {
    constexpr int reach = PanelMetrics::halfUnit;
    return mark_ == Mark::box && boxRect().adjusted(-reach, -reach, reach, reach).contains(at);
}

void PanelCheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (focusRing_.shows(hasFocus())) {
        fillStepped(painter, rect(), 1, palette_.ink);
        fillStepped(painter, rect().adjusted(pixel, pixel, -pixel, -pixel), 0, palette_.paper);
    } else if (underMouse() && isEnabled()) {
        fillStepped(painter, rect(), 1, palette_.hover);
    }
    if (mark_ == Mark::box) {
        paintBox(painter);
    } else {
        paintDash(painter);
    }
    const int side = int(isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | int(Qt::AlignAbsolute);
    const QRect words = wordsRect();
    painter.setPen(isChecked() ? palette_.quietInk() : palette_.ink);
    QTextLayout layout(title_, wordsFont());
    breakLines(layout, words.width());
    layout.draw(&painter, words.topLeft());
    if (!detail_.isEmpty()) {
        painter.setFont(detailFont());
        painter.setPen(palette_.quietInk());
        const QRect below(words.left(), words.bottom() + 1, words.width(), height() - words.bottom() - 1);
        painter.drawText(below, side | int(Qt::AlignTop) | int(Qt::TextSingleLine), detail_);
    }
}

void PanelCheckBox::paintBox(QPainter& painter) const {
    const QRect box = boxRect();
    const QRect inner = box.adjusted(pixel, pixel, -pixel, -pixel);
    const QColor edge = mixed(palette_.paper, palette_.ink, 0.6);
    fillStepped(painter, box, 1, isChecked() ? palette_.accent : edge);
    if (!isChecked()) {
        fillStepped(painter, inner, 0, isDown() ? palette_.pressed : palette_.paper);
        return;
    }
    paintPixelMap(painter, box.topLeft() + QPoint(pixel, 2 * pixel), tick, palette_.paper, pixel);
}

void PanelCheckBox::paintDash(QPainter& painter) const {
    const QRect box = boxRect();
    painter.fillRect(box.left() + 2 * pixel, box.top() + 4 * pixel, 5 * pixel, pixel, palette_.accent);
}

void PanelCheckBox::resizeEvent(QResizeEvent* event) {
    QAbstractButton::resizeEvent(event);
    if (heightForWidth(width()) != height()) {
        updateGeometry();
    }
}

void PanelCheckBox::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        relay();
    }
    QAbstractButton::changeEvent(event);
}

void PanelCheckBox::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    QAbstractButton::focusInEvent(event);
}

void PanelCheckBox::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    QAbstractButton::focusOutEvent(event);
}

void PanelCheckBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() >= Qt::Key_Left && event->key() <= Qt::Key_Down) {
        event->ignore(); // the bubble looks for the neighbour in that direction
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace DeskSprites
