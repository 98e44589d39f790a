#include "app/characters/munshi/MunshiEarlierDelegate.h"

#include "app/characters/munshi/MunshiEarlierModel.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelMap.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <array>

namespace DeskSprites {

namespace {
using RowKind = MunshiEarlierModel::RowKind;
constexpr int pixel = PixelFrame::pixel;
constexpr int markSide = 7 * pixel;
constexpr std::array<std::string_view, 5> tick = {"......#", ".....##", "#...##.", "##.##..", ".###..."};
} // namespace

QSize MunshiEarlierDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int height = std::max(option.fontMetrics.height(), markSide) + PanelMetrics::unit;
    return {PanelMetrics::contentWidth, height + height % 2};
}

void MunshiEarlierDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const int kind = index.data(MunshiEarlierModel::kindRole).toInt();
    const bool isHeading = kind == static_cast<int>(RowKind::heading);
    const bool isChosen = option.state.testFlag(QStyle::State_Selected);
    const bool over = option.state.testFlag(QStyle::State_MouseOver);
    if (isChosen || over) {
        fillStepped(*painter, option.rect, 1, isChosen ? palette_.pressed : palette_.hover);
    }
    painter->save();
    QFont font = option.font;
    font.setBold(isHeading);
    font.setStrikeOut(kind == static_cast<int>(RowKind::doneTask));
    painter->setFont(font);
    // On the stronger ground of a chosen row only full ink is readable.
    const bool quiet = kind == static_cast<int>(RowKind::doneTask) && !isChosen;
    painter->setPen(isHeading && !isChosen ? palette_.accent : quiet ? palette_.quietInk() : palette_.ink);
    const int side = isHeading ? 0 : markSide + PanelMetrics::unit;
    QRect words = option.rect.adjusted(PanelMetrics::halfUnit, 0, -PanelMetrics::halfUnit, 0);
    const QRect mark = QStyle::alignedRect(option.direction, Qt::AlignLeft | Qt::AlignVCenter,
                                           QSize(markSide, markSide), words);
    words =
        option.direction == Qt::RightToLeft ? words.adjusted(0, 0, -side, 0) : words.adjusted(side, 0, 0, 0);
    const QString text =
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, words.width());
    painter->drawText(words,
                      int(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) |
                          int(Qt::AlignAbsolute) | int(Qt::TextSingleLine),
                      text);
    if (!isHeading) {
        paintMark(*painter, mark, kind);
    }
    painter->restore();
}

void MunshiEarlierDelegate::paintMark(QPainter& painter, const QRect& place, int kind) const {
    switch (static_cast<RowKind>(kind)) {
    case RowKind::doneTask:
        paintPixelMap(painter, place.topLeft() + QPoint(0, pixel), tick, palette_.accent, pixel);
        break;
    case RowKind::openTask:
        fillStepped(painter, place, 1, mixed(palette_.paper, palette_.ink, 0.6));
        fillStepped(painter, place.adjusted(pixel, pixel, -pixel, -pixel), 0, palette_.paper);
        break;
    case RowKind::note:
        painter.fillRect(place.left() + pixel, place.top() + 3 * pixel, 5 * pixel, pixel, palette_.accent);
        break;
    case RowKind::heading:
        break;
    }
}

} // namespace DeskSprites
