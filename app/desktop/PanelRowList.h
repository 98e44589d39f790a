#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PanelScroll.h"

#include <functional>
#include <vector>

class QKeyEvent;
class QMouseEvent;
class QVBoxLayout;

namespace DeskSprites {

/// One row of a `PanelRowList`.
class PanelRow : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// What Tab and the arrows stop at.
    virtual QWidget* stop() const = 0;
    /// Whether the mouse can take the row along from that place of its stop.
    virtual bool dragsFrom(const QPoint& place) const = 0;
    /// The mouse has taken the row along, or has let go of it.
    virtual void showDragging(bool /*isDragging*/) {}
};

/// Rows that scroll and that the user may put in another order: by Alt with Up and Down, and by dragging.
/// Tab stops at one row only, and the arrows reach the others. Rows stay the same widgets while their owner
/// wants them, so that nothing that is focused, dragged or typed is disturbed by what happens to the others.
class PanelRowList : public PanelScroll {
    Q_OBJECT

public:
    explicit PanelRowList(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// The control from which Tab goes on to the rows.
    void setTabAfter(QWidget* before) { before_ = before; }
    /// Shows these rows from top to bottom, made with `rowParent()` as their parent. One that is shown and
    /// not wanted any more is deleted; when it had the keyboard, the row in its place gets it.
    void arrange(const std::vector<PanelRow*>& wanted);
    const std::vector<PanelRow*>& rows() const { return rows_; }
    QWidget* rowParent() const { return inside_; }
    /// Shows a widget above the rows.
    void setHeading(QWidget* heading);
    /// Brings a row into view.
    void reveal(PanelRow& row);
    int indexOf(const PanelRow& row) const;

    /// The user wants a row so many places further down, or up.
    std::function<void(PanelRow& row, int by)> onMove;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    PanelRow* rowOf(const QObject* stop) const;
    int leave(const std::vector<PanelRow*>& wanted);
    void placeRows();
    void chainTabs();
    void setCurrent(PanelRow& current);
    bool key(PanelRow& row, const QKeyEvent& event);
    bool mouse(PanelRow& row, QEvent& event);
    void stepFrom(const PanelRow& row, int by);
    void takeHold(PanelRow& row, const QMouseEvent& press);
    void dragTo(const QPoint& global);
    void drop(PanelRow& row, const QPoint& global);
    void endDrag();
    int dropIndex(const QPoint& global) const;
    void showDropMark(int index);

    QWidget* inside_;
    QVBoxLayout* column_;
    QWidget* dropMark_;
    QWidget* heading_ = nullptr;
    QWidget* before_ = nullptr;
    std::vector<PanelRow*> rows_;
    PanelRow* current_ = nullptr; ///< at which Tab stops
    PanelRow* held_ = nullptr;    ///< that the mouse may take along
    bool isDragging_ = false;
    QPoint pressed_; ///< where it took hold, global
};

} // namespace DeskSprites
