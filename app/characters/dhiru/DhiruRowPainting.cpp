// What a row of Dhiru's lists looks like; DhiruRow.cpp has what it does.
#include "app/characters/dhiru/DhiruRow.h"

#include "app/desktop/LampDot.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int unit = PanelMetrics::unit;
constexpr int halfUnit = PanelMetrics::halfUnit;
constexpr int pixel = PixelFrame::pixel;
constexpr int cornerSteps = 2;
constexpr int lampRoom = 12 + unit; // a lamp and what parts it from the words
constexpr int leastWidth = 20 * unit;

} // namespace

QFont DhiruRow::titleFont() const {
    QFont own = font();
    own.setBold(true);
    return own;
}

int DhiruRow::headingHeight() const {
    return line_.heading.isEmpty() ? 0 : fontMetrics().height() + unit;
}

int DhiruRow::noteHeight() const {
    return line_.note.isEmpty() ? 0 : fontMetrics().height();
}

QSize DhiruRow::sizeHint() const {
    const int words = QFontMetrics(titleFont()).height() + fontMetrics().height();
    const int body = std::max(words, PanelMetrics::controlHeight) + unit;
    const int height = headingHeight() + body + noteHeight();
    return {leastWidth, height + height % 2};
}

QSize DhiruRow::minimumSizeHint() const {
    return sizeHint();
}

/// The row without the heading of its group.
QRect DhiruRow::card() const {
    return rect().adjusted(0, headingHeight(), 0, 0);
}

QRect DhiruRow::mirrored(const QRect& place) const {
    return isRightToLeft() ? QRect(width() - place.right() - 1, place.top(), place.width(), place.height())
                           : place;
}

void DhiruRow::placeLamp() {
    const int lines = QFontMetrics(titleFont()).height();
    const QRect lamp(unit, card().top() + halfUnit + (lines - lamp_->height()) / 2, lamp_->width(),
                     lamp_->height());
    lamp_->setGeometry(mirrored(lamp));
}

void DhiruRow::paintGround(QPainter& painter) const {
    const QColor ground = mixed(palette_.paper, palette_.ink, 0.05);
    const QColor edge = focusRing_.shows(hasFocus()) ? palette_.ink : palette_.accent;
    if (asked_ || focusRing_.shows(hasFocus())) {
        fillStepped(painter, card(), cornerSteps, edge);
        fillStepped(painter, card().adjusted(pixel, pixel, -pixel, -pixel), cornerSteps - 1, ground);
    } else {
        fillStepped(painter, card(), cornerSteps, ground);
    }
}

void DhiruRow::paintText(QPainter& painter, const QRect& place, const QString& text, const QColor& colour,
                         const QFont& font) {
    const QString shown = QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width());
    shortened_ = shortened_ || shown != text;
    painter.setFont(font);
    painter.setPen(isEnabled() ? colour : mixed(colour, palette_.paper, 0.5));
    const Qt::Alignment side = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(mirrored(place), static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
}

/// The name, which gives way, then the mark, which does not, and what there is still room for.
void DhiruRow::paintTitle(QPainter& painter, const QRect& place) {
    const QFontMetrics bold(titleFont());
    const int gap = unit;
    // One more than measured, or a text might be shortened for a fraction of a point.
    const int markRoom = line_.mark.isEmpty() ? 0 : bold.horizontalAdvance(line_.mark) + 1 + gap;
    const int markWidth = std::min(markRoom, place.width() / 2);
    const int nameWidth = std::min(bold.horizontalAdvance(line_.title) + 1, place.width() - markWidth);
    QRect rest = place;
    rest.setWidth(nameWidth);
    paintText(painter, rest, line_.title, palette_.ink, titleFont());
    int left = place.left() + nameWidth;
    if (markWidth > 0) {
        paintText(painter, {left + gap, place.top(), markWidth - gap, place.height()}, line_.mark,
                  palette_.accent, titleFont());
        left += markWidth;
    }
    const int asideWidth = fontMetrics().horizontalAdvance(line_.aside) + 1;
    if (!line_.aside.isEmpty() && left + gap + asideWidth <= place.right() + 1) {
        paintText(painter, {left + gap, place.top(), asideWidth, place.height()}, line_.aside,
                  palette_.quietInk(), font());
    }
}

void DhiruRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    shortened_ = false;
    if (!line_.heading.isEmpty()) {
        paintText(painter, {0, halfUnit, width(), headingHeight() - unit}, line_.heading, palette_.quietInk(),
                  titleFont());
    }
    paintGround(painter);
    const int start = unit + (line_.lamp == DhiruLamp::none ? 0 : lampRoom);
    int buttons = unit;
    for (const DhiruAct act : line_.acts) {
        buttons += button(act)->width() + halfUnit;
    }
    const QFontMetrics bold(titleFont());
    const int valueWidth = line_.value.isEmpty() ? 0 : bold.horizontalAdvance(line_.value) + unit;
    const int room = width() - start - buttons - valueWidth;
    const int top = card().top() + halfUnit;
    paintTitle(painter, {start, top, room, bold.height()});
    paintText(painter, {start, top + bold.height(), room, fontMetrics().height()}, line_.detail,
              palette_.quietInk(), font());
    if (valueWidth > 0) {
        const int height = card().height() - unit - noteHeight();
        const bool strong = line_.lamp == DhiruLamp::alarm;
        paintText(painter, {width() - buttons - valueWidth + unit, top, valueWidth, height}, line_.value,
                  palette_.ink, strong ? titleFont() : font());
    }
    paintText(painter, {start, height() - halfUnit - noteHeight(), width() - start - unit, noteHeight()},
              line_.note, line_.isNews ? palette_.accent : palette_.quietInk(), font());
}

} // namespace DeskSprites
