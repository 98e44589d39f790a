#include "app/characters/clock/ClockSearchDelegate.h"

#include "app/characters/clock/ClockLine.h"
#include "app/characters/clock/ClockSearchModel.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QPainter>

namespace DeskSprites {

ClockSearchDelegate::ClockSearchDelegate(const ClockSearchModel& model, QObject* parent)
    : QStyledItemDelegate(parent), model_(model) {}

QSize ClockSearchDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {PanelMetrics::contentWidth, ClockLine::height(option.font)};
}

void ClockSearchDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    // As far from the scroll bar as the panel's rows.
    const int before = option.direction == Qt::RightToLeft ? PanelMetrics::halfUnit : 0;
    const QRect place = option.rect.adjusted(before, 0, before - PanelMetrics::halfUnit, 0);
    const bool isChosen = option.state.testFlag(QStyle::State_Selected);
    const bool isOver = option.state.testFlag(QStyle::State_MouseOver);
    if (isChosen || isOver) {
        fillStepped(*painter, place, 1, isChosen ? palette_.pressed : palette_.hover);
    }
    const FellowCore::WorldClockRow row = model_.clock(index.row());
    const ClockLine::Mark mark = row.isHome                    ? ClockLine::Mark::home
                                 : model_.isAdded(index.row()) ? ClockLine::Mark::added
                                                               : ClockLine::Mark::add;
    ClockLine(row, mark).paint(*painter, place,
                               {option.font, palette_, option.direction, isChosen || isOver, isPreview_});
}

} // namespace DeskSprites
