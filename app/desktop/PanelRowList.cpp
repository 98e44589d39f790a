#include "app/desktop/PanelRowList.h"

#include "app/desktop/PanelMetrics.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace DeskSprites {

namespace {
constexpr int dropMarkHeight = 2;
constexpr int nearEdge = 24; // points from the edge of the view at which a drag scrolls
} // namespace

PanelRowList::PanelRowList(QWidget* parent)
    : PanelScroll(parent), inside_(new QWidget), column_(new QVBoxLayout(inside_)),
      dropMark_(new QWidget(inside_)) {
    column_->setContentsMargins(0, 0, PanelMetrics::halfUnit, 0);
    column_->setSpacing(0);
    column_->addStretch();
    dropMark_->setAutoFillBackground(true);
    dropMark_->setAttribute(Qt::WA_TransparentForMouseEvents);
    dropMark_->hide();
    setRows(inside_);
}

void PanelRowList::setDialoguePalette(const DialoguePalette& palette) {
    PanelScroll::setDialoguePalette(palette);
    QPalette mark;
    mark.setColor(QPalette::Window, palette.accent);
    dropMark_->setPalette(mark);
}

void PanelRowList::setHeading(QWidget* heading) {
    heading_ = heading;
    column_->insertWidget(0, heading);
}

void PanelRowList::arrange(const std::vector<PanelRow*>& wanted) {
    if (rows_ == wanted) {
        return;
    }
    const int focused = leave(wanted);
    for (PanelRow* row : wanted) {
        if (std::ranges::find(rows_, row) == rows_.end()) {
            row->stop()->installEventFilter(this);
            row->show();
        }
    }
    rows_ = wanted;
    placeRows();
    chainTabs();
    if (rows_.empty()) {
        return;
    }
    setCurrent(current_ == nullptr ? *rows_.front() : *current_);
    if (focused >= 0) {
        const auto next = std::min(static_cast<std::size_t>(focused), rows_.size() - 1);
        rows_[next]->stop()->setFocus(Qt::ShortcutFocusReason);
    }
}

/// Lets go of the rows that are not wanted; the place of the one that had the keyboard, or -1.
int PanelRowList::leave(const std::vector<PanelRow*>& wanted) {
    int focused = -1;
    for (PanelRow* row : rows_) {
        if (std::ranges::find(wanted, row) != wanted.end()) {
            continue;
        }
        focused = row->stop()->hasFocus() ? indexOf(*row) : focused;
        if (held_ == row) {
            endDrag();
        }
        current_ = current_ == row ? nullptr : current_;
        row->stop()->removeEventFilter(this);
        column_->removeWidget(row);
        row->hide();
        row->deleteLater(); // perhaps in the middle of its own event
    }
    return focused;
}

void PanelRowList::placeRows() {
    int place = heading_ == nullptr ? 0 : 1;
    for (PanelRow* row : rows_) {
        if (column_->indexOf(row) != place) {
            column_->removeWidget(row);
            column_->insertWidget(place, row);
        }
        ++place;
    }
}

void PanelRowList::chainTabs() {
    QWidget* last = before_;
    for (const PanelRow* row : rows_) {
        if (last != nullptr) {
            setTabOrder(last, row->stop());
        }
        last = row->stop();
    }
}

void PanelRowList::setCurrent(PanelRow& current) {
    current_ = &current;
    for (const PanelRow* row : rows_) {
        row->stop()->setFocusPolicy(row == &current ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void PanelRowList::reveal(PanelRow& row) {
    inside_->layout()->activate();
    ensureWidgetVisible(&row, 0, 0);
}

int PanelRowList::indexOf(const PanelRow& row) const {
    return static_cast<int>(std::ranges::find(rows_, &row) - rows_.begin());
}

PanelRow* PanelRowList::rowOf(const QObject* stop) const {
    const auto found = std::ranges::find(rows_, stop, &PanelRow::stop);
    return found == rows_.end() ? nullptr : *found;
}

bool PanelRowList::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        if (PanelRow* const row = rowOf(watched)) {
            return key(*row, *static_cast<QKeyEvent*>(event));
        }
        break;
    case QEvent::FocusIn:
        if (PanelRow* const row = rowOf(watched)) {
            setCurrent(*row);
            ensureWidgetVisible(row, 0, 0);
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        if (PanelRow* const row = rowOf(watched)) {
            return mouse(*row, *event);
        }
        break;
    default:
        break;
    }
    return PanelScroll::eventFilter(watched, event);
}

void PanelRowList::resizeEvent(QResizeEvent* event) {
    PanelScroll::resizeEvent(event);
    if (current_ != nullptr && current_->stop()->hasFocus()) {
        ensureWidgetVisible(current_, 0, 0); // a sentence below the list takes some of its room
    }
}

bool PanelRowList::key(PanelRow& row, const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isArrow = event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
    const int by = event.key() == Qt::Key_Up ? -1 : 1;
    if (isArrow && modifiers == Qt::AltModifier) {
        onMove(row, by);
    } else if (isArrow && modifiers == Qt::NoModifier) {
        stepFrom(row, by);
    } else if (event.key() == Qt::Key_Escape && isDragging_) {
        endDrag();
    } else {
        return false;
    }
    return true;
}

void PanelRowList::stepFrom(const PanelRow& row, int by) {
    const int next = indexOf(row) + by;
    if (next >= 0 && next < static_cast<int>(rows_.size())) {
        rows_[static_cast<std::size_t>(next)]->stop()->setFocus(Qt::ShortcutFocusReason);
    } else {
        focusNextPrevChild(by > 0);
    }
}

bool PanelRowList::mouse(PanelRow& row, QEvent& event) {
    const auto& mouse = static_cast<QMouseEvent&>(event);
    const QPoint at = mouse.globalPosition().toPoint();
    const bool wasDragging = isDragging_;
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        endDrag(); // another button gives it up
        takeHold(row, mouse);
        return false;
    case QEvent::MouseMove:
        dragTo(at);
        return isDragging_;
    default:
        endDrag();
        if (wasDragging) {
            drop(row, at);
        }
        return false;
    }
}

void PanelRowList::takeHold(PanelRow& row, const QMouseEvent& press) {
    const bool may = press.button() == Qt::LeftButton && row.dragsFrom(press.position().toPoint());
    held_ = may ? &row : nullptr;
    pressed_ = press.globalPosition().toPoint();
}

void PanelRowList::dragTo(const QPoint& global) {
    const bool isFar = (global - pressed_).manhattanLength() >= QApplication::startDragDistance();
    if (held_ == nullptr || !(isDragging_ || isFar)) {
        return;
    }
    if (!std::exchange(isDragging_, true)) {
        held_->showDragging(true);
    }
    const int y = viewport()->mapFromGlobal(global).y();
    const int scroll = y < nearEdge ? -1 : y > viewport()->height() - nearEdge ? 1 : 0;
    verticalScrollBar()->setValue(verticalScrollBar()->value() + scroll * nearEdge / 3);
    viewport()->setCursor(Qt::ClosedHandCursor);
    showDropMark(dropIndex(global));
}

void PanelRowList::drop(PanelRow& row, const QPoint& global) {
    const int from = indexOf(row);
    const int to = dropIndex(global);
    onMove(row, to > from ? to - 1 - from : to - from);
}

void PanelRowList::endDrag() {
    PanelRow* const row = std::exchange(held_, nullptr);
    if (std::exchange(isDragging_, false)) {
        viewport()->unsetCursor();
        dropMark_->hide();
        row->showDragging(false);
    }
}

/// Between which rows the pointer is: the index of the row below it.
int PanelRowList::dropIndex(const QPoint& global) const {
    const int y = inside_->mapFromGlobal(global).y();
    const auto below =
        std::ranges::find_if(rows_, [y](const PanelRow* row) { return y < row->y() + row->height() / 2; });
    return static_cast<int>(below - rows_.begin());
}

void PanelRowList::showDropMark(int index) {
    if (rows_.empty()) {
        return;
    }
    const bool atEnd = index >= static_cast<int>(rows_.size());
    const PanelRow* const near = atEnd ? rows_.back() : rows_[static_cast<std::size_t>(index)];
    const int y = atEnd ? near->y() + near->height() - dropMarkHeight : std::max(0, near->y() - 1);
    dropMark_->setGeometry(near->x(), y, near->width(), dropMarkHeight);
    dropMark_->raise();
    dropMark_->show();
}

} // namespace DeskSprites
