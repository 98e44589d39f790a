#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QStyledItemDelegate>

namespace DeskSprites {

class ClockSearchModel;

/// Draws the cities that a search has found as the panel's rows are drawn.
class ClockSearchDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    ClockSearchDelegate(const ClockSearchModel& model, QObject* parent);

    void setDialoguePalette(const DialoguePalette& palette) { palette_ = palette; }
    /// Whether the times are other ones than now's.
    void setPreview(bool isPreview) { isPreview_ = isPreview; }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    const ClockSearchModel& model_;
    DialoguePalette palette_;
    bool isPreview_ = false;
};

} // namespace DeskSprites
