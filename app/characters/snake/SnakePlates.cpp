#include "app/characters/snake/SnakePlates.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelDigits.h"
#include "app/desktop/PixelFrame.h"
#include "core/snake/SnakeSpeed.h"

#include <QAccessible>
#include <QPainter>

namespace DeskSprites {

namespace {

constexpr int unit = PanelMetrics::unit;
constexpr int edge = PixelFrame::pixel;
constexpr int plateHeight = 4 * unit;

// A level's mark: narrow, with room between one and the next.
constexpr int pipWidth = 6;
constexpr int pipHeight = 10;
constexpr int pipStep = unit;

PixelDigits digits() {
    return PixelDigits(PixelDigits::Face::large, 2);
}

int wordsWidth(const QWidget& widget, const QString& words) {
    return widget.fontMetrics().horizontalAdvance(words);
}

QSize plateSize(int inside, const QWidget& widget) {
    return {inside + 4 * unit, std::max(plateHeight, widget.fontMetrics().height() + unit)};
}

QRect insideOf(const QWidget& widget) {
    return widget.rect().adjusted(2 * unit, 0, -2 * unit, 0);
}

} // namespace

void paintSnakePlate(QPainter& painter, const QRect& rect, const DialoguePalette& palette) {
    const bool light = palette.theme() == DesktopTheme::light;
    fillStepped(painter, rect, 2, palette.contour());
    fillStepped(painter, rect.adjusted(edge, edge, -edge, -edge), 1,
                light ? palette.paper : palette.highlight());
    fillStepped(painter, rect.adjusted(2 * edge, 2 * edge, -2 * edge, -2 * edge), 1, palette.paper);
}

SnakeCountPlate::SnakeCountPlate(const QString& word, QWidget* parent) : QWidget(parent), word_(word) {
    setCount(0, false);
}

void SnakeCountPlate::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void SnakeCountPlate::setCount(int count, bool standsOut) {
    setAccessibleName(QStringLiteral("%1 %2").arg(word_).arg(count));
    if (count != count_ || standsOut != standsOut_) {
        count_ = count;
        standsOut_ = standsOut;
        update();
    }
}

QSize SnakeCountPlate::sizeHint() const {
    const int number = digits().size(QString::number(count_)).width();
    return plateSize(wordsWidth(*this, word_) + unit + number, *this);
}

void SnakeCountPlate::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSnakePlate(painter, rect(), palette_);
    const QString number = QString::number(count_);
    const QSize size = digits().size(number);
    const QRect inside = insideOf(*this);
    painter.setPen(palette_.quietInk());
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft, word_);
    digits().paint(painter, {inside.right() + 1 - size.width(), (height() - size.height()) / 2}, number,
                   standsOut_ ? palette_.accent : palette_.ink);
}

SnakeWordsPlate::SnakeWordsPlate(QWidget* parent) : QWidget(parent) {}

void SnakeWordsPlate::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void SnakeWordsPlate::setWords(const QString& words) {
    words_ = words;
    setAccessibleName(words);
    update();
}

QSize SnakeWordsPlate::sizeHint() const {
    return plateSize(wordsWidth(*this, words_), *this);
}

void SnakeWordsPlate::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSnakePlate(painter, rect(), palette_);
    painter.setPen(palette_.ink);
    painter.drawText(rect(), Qt::AlignCenter, words_);
}

SnakeSpeedPlate::SnakeSpeedPlate(QWidget* parent) : QWidget(parent) {
    shown_.setSingleShot(true);
    fading_.setDuration(fadeMilliseconds);
    fading_.setStartValue(1.0);
    fading_.setEndValue(0.0);
    connect(&shown_, &QTimer::timeout, this, &SnakeSpeedPlate::leave);
    connect(&fading_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&fading_, &QVariantAnimation::finished, this, &QWidget::hide);
    hide();
}

void SnakeSpeedPlate::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void SnakeSpeedPlate::flash(const QString& title, int level, bool fades) {
    fading_.stop();
    title_ = title;
    level_ = level;
    fades_ = fades;
    setAccessibleName(tr("Speed %1, %2").arg(level).arg(title));
    show();
    update();
    shown_.start(shownMilliseconds);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void SnakeSpeedPlate::leave() {
    if (fades_) {
        fading_.start();
    } else {
        hide();
    }
}

QSize SnakeSpeedPlate::sizeHint() const {
    constexpr int pips = FellowCore::SnakeSpeed::fastest * pipStep;
    return plateSize(wordsWidth(*this, title_) + 2 * unit + pips, *this);
}

void SnakeSpeedPlate::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (fading_.state() == QAbstractAnimation::Running) {
        painter.setOpacity(fading_.currentValue().toDouble());
    }
    paintSnakePlate(painter, rect(), palette_);
    const QRect inside = insideOf(*this);
    painter.setPen(palette_.ink);
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft, title_);
    const int left = inside.right() + 1 - FellowCore::SnakeSpeed::fastest * pipStep + pipStep - pipWidth;
    for (int i = 0; i < FellowCore::SnakeSpeed::fastest; ++i) {
        painter.fillRect(left + i * pipStep, (height() - pipHeight) / 2, pipWidth, pipHeight,
                         i < level_ ? palette_.accent : palette_.line());
    }
}

} // namespace DeskSprites
