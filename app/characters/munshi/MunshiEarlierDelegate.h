#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QStyledItemDelegate>

namespace DeskSprites {

/// Draws the rows of `MunshiEarlierModel`, all equally high.
class MunshiEarlierDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setDialoguePalette(const DialoguePalette& palette) { palette_ = palette; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintMark(QPainter& painter, const QRect& place, int kind) const;

    DialoguePalette palette_;
};

} // namespace DeskSprites
