#include "app/desktop/PanelTabs.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QFocusEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int markHeight = 2 * pixel; // of the line below the chosen tab
constexpr int cornerSteps = 2;
} // namespace

PanelTabs::PanelTabs(QWidget* parent) : QTabBar(parent) {
    setDrawBase(false);
    setExpanding(true);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PanelTabs::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void PanelTabs::add(const QString& title) {
    const int index = addTab(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
    setTabData(index, QVariant());
    setAccessibleTabName(index, title);
}

void PanelTabs::setCount(int tab, std::optional<int> count) {
    const QVariant counted = count ? QVariant(*count) : QVariant();
    if (counted == tabData(tab)) {
        return;
    }
    setTabData(tab, counted);
    const QString title = tabText(tab).replace(QLatin1String("&&"), QLatin1String("&"));
    setAccessibleTabName(tab, count ? tr("%1, %2").arg(title, countWords(tab)) : title);
    update();
}

QString PanelTabs::countWords(int index) const {
    const QVariant count = tabData(index);
    return count.isValid() ? QLocale().toString(count.toInt()) : QString();
}

QFont PanelTabs::wordsFont(int index) const {
    QFont own = scaledFont(font(), 0.94);
    own.setWeight(index == currentIndex() ? QFont::DemiBold : QFont::Normal);
    return own;
}

/// The share that its words want, measured at the heavier weight with room for a count, so that neither a
/// choice nor a reading moves anything.
QSize PanelTabs::tabSizeHint(int index) const {
    QFont heaviest = wordsFont(index);
    heaviest.setWeight(QFont::DemiBold);
    const QFontMetrics metrics(heaviest);
    const int words =
        metrics.horizontalAdvance(tabText(index)) + metrics.horizontalAdvance(QStringLiteral(" 00"));
    const int height = std::max(PanelMetrics::controlHeight, metrics.height() + 12);
    return {words + PanelMetrics::unit, height + height % 2};
}

/// Words are shortened before a tab disappears.
QSize PanelTabs::minimumTabSizeHint(int index) const {
    return {5 * PanelMetrics::unit, tabSizeHint(index).height()};
}

QColor PanelTabs::ground(int index) const {
    return index == hovered_ && index != currentIndex() && isEnabled() ? palette_.hover : palette_.paper;
}

void PanelTabs::paintTab(QPainter& painter, int index) const {
    const QRect place = tabRect(index);
    const bool chosen = index == currentIndex();
    const QRect face = place.adjusted(0, 0, 0, -markHeight - pixel);
    if (chosen && focusRing_.shows(hasFocus())) {
        fillStepped(painter, face, cornerSteps, palette_.ink);
        fillStepped(painter, face.adjusted(pixel, pixel, -pixel, -pixel), cornerSteps - 1, palette_.paper);
    } else {
        fillStepped(painter, face, cornerSteps, ground(index));
    }
    if (chosen) {
        painter.fillRect(place.left(), place.bottom() + 1 - markHeight, place.width(), markHeight,
                         isEnabled() ? palette_.accent : palette_.line());
    }
    const QColor strong = isEnabled() ? palette_.ink : mixed(palette_.ink, palette_.paper, 0.5);
    const QColor quiet = isEnabled() ? palette_.quietInk() : strong;
    const QFont own = wordsFont(index);
    const QString count = countWords(index);
    const QFontMetrics metrics(own);
    const int gap = count.isEmpty() ? 0 : metrics.horizontalAdvance(QLatin1Char(' '));
    const int countWidth = metrics.horizontalAdvance(count);
    const QString title = tabText(index).replace(QLatin1String("&&"), QLatin1String("&"));
    const int room = std::max(0, face.width() - 2 * pixel - gap - countWidth);
    const QString words = metrics.elidedText(title, Qt::ElideRight, room);
    const int width = metrics.horizontalAdvance(words) + gap + countWidth;
    QRect line(face.left() + (face.width() - width) / 2, face.top(), width, face.height());
    const auto start = static_cast<int>(isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    const auto end = static_cast<int>(isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
    painter.setFont(own);
    painter.setPen(chosen ? strong : quiet);
    painter.drawText(line, static_cast<int>(start) | Qt::TextSingleLine, words);
    painter.setPen(quiet);
    painter.drawText(line, static_cast<int>(end) | Qt::TextSingleLine, count);
}

void PanelTabs::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, height() - pixel, width(), pixel, palette_.line());
    for (int index = 0; index < count(); ++index) {
        paintTab(painter, index);
    }
}

void PanelTabs::setHovered(int index) {
    if (std::exchange(hovered_, index) != index) {
        update();
    }
}

void PanelTabs::mouseMoveEvent(QMouseEvent* event) {
    setHovered(tabAt(event->position().toPoint()));
    QTabBar::mouseMoveEvent(event);
}

void PanelTabs::leaveEvent(QEvent* event) {
    setHovered(-1);
    QTabBar::leaveEvent(event);
}

void PanelTabs::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    QTabBar::focusInEvent(event);
    update();
}

void PanelTabs::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    QTabBar::focusOutEvent(event);
    update();
}

} // namespace DeskSprites
