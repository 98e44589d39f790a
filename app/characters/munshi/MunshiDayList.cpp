#include "app/characters/munshi/MunshiDayList.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/desktop/PanelControls.h"

#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int dropMarkHeight = 2;
constexpr int nearEdge = 24; // points from the edge of the view at which a drag scrolls
} // namespace

MunshiDayList::MunshiDayList(MunshiBook& book, QWidget* parent)
    : PanelScroll(parent), book_(book), inside_(new QWidget), column_(new QVBoxLayout(inside_)),
      empty_(new PanelText(TextRole::quiet, inside_)), dropMark_(new QWidget(inside_)) {
    column_->setContentsMargins(0, 0, PanelMetrics::halfUnit, 0);
    column_->setSpacing(0);
    column_->addWidget(empty_);
    column_->addStretch();
    empty_->setContentsMargins(PanelMetrics::halfUnit, PanelMetrics::unit, 0, 0);
    dropMark_->setAutoFillBackground(true);
    dropMark_->setAttribute(Qt::WA_TransparentForMouseEvents);
    dropMark_->hide();
    setRows(inside_);
    setAccessibleName(tr("Today's lines"));
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { moreAtEnd(); });
}

void MunshiDayList::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    PanelScroll::setDialoguePalette(palette);
    empty_->setDialoguePalette(palette);
    QPalette mark;
    mark.setColor(QPalette::Window, palette.accent);
    dropMark_->setPalette(mark);
    for (MunshiRow* row : rows_) {
        row->setDialoguePalette(palette);
    }
}

bool MunshiDayList::isEditing() const {
    return std::ranges::any_of(rows_, &MunshiRow::isEditing);
}

void MunshiDayList::refresh() {
    const FellowCore::MunshiLedger& ledger = book_.ledger();
    empty_->setText(book_.isRead() ? tr("Nothing is written down for today.") : tr("Opening the ledger…"));
    empty_->setVisible(ledger.today.empty());
    arrange(wantedRows());
    std::map<FellowCore::Uuid, MunshiRow*> byId;
    for (MunshiRow* row : rows_) {
        byId.emplace(row->id(), row);
    }
    for (const FellowCore::MunshiItem& item : ledger.today) {
        if (const auto row = byId.find(item.id); row != byId.end()) {
            row->second->showItem(item, ledger.currentDay);
        }
    }
}

/// The rows of the lines, new ones made; a row whose line has gone while it was edited keeps its place.
std::vector<MunshiRow*> MunshiDayList::wantedRows() {
    std::map<FellowCore::Uuid, MunshiRow*> known;
    for (MunshiRow* row : rows_) {
        known.emplace(row->id(), row);
    }
    const auto& today = book_.ledger().today;
    std::vector<MunshiRow*> wanted;
    for (std::size_t index = 0; index < std::min(limit_, today.size()); ++index) {
        const auto found = known.find(today[index].id);
        wanted.push_back(found != known.end() ? found->second : makeRow(today[index].id));
    }
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        if (rows_[index]->isEditing() && std::ranges::find(wanted, rows_[index]) == wanted.end()) {
            const auto place = std::min(index, wanted.size());
            wanted.insert(wanted.begin() + static_cast<std::ptrdiff_t>(place), rows_[index]);
        }
    }
    return wanted;
}

void MunshiDayList::arrange(const std::vector<MunshiRow*>& wanted) {
    int focused = -1;
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        MunshiRow* const row = rows_[index];
        if (std::ranges::find(wanted, row) == wanted.end()) {
            focused = row->stop()->hasFocus() ? static_cast<int>(index) : focused;
            column_->removeWidget(row);
            row->hide();
            row->deleteLater();
        }
    }
    const bool same = rows_ == wanted;
    rows_ = wanted;
    if (same) {
        return;
    }
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        const int place = static_cast<int>(index) + 1; // behind the sentence for an empty day
        if (column_->indexOf(wanted[index]) != place) {
            column_->removeWidget(wanted[index]);
            column_->insertWidget(place, wanted[index]);
        }
    }
    QWidget* last = before_;
    for (const MunshiRow* row : rows_) {
        if (last) {
            setTabOrder(last, row->stop());
        }
        last = row->stop();
    }
    if (rows_.empty()) {
        return;
    }
    const auto current = std::ranges::find(rows_, current_, &MunshiRow::id);
    setCurrent(current == rows_.end() ? *rows_.front() : **current);
    if (focused >= 0) {
        const auto next = std::min(static_cast<std::size_t>(focused), rows_.size() - 1);
        rows_[next]->stop()->setFocus(Qt::ShortcutFocusReason);
    }
}

MunshiRow* MunshiDayList::makeRow(const FellowCore::Uuid& id) {
    auto hooks = std::make_shared<MunshiRow*>(nullptr);
    auto* row = new MunshiRow(
        id,
        {.check = [this, id](bool done) { book_.setDone(id, done); },
         .rewrite = [this, id](const QString& text) { book_.edit(id, text); },
         .remove = [this, id] { book_.remove(id); },
         .move = [this, hooks](int by) { moveRow(**hooks, by); },
         .step = [this, hooks](int by) { stepFrom(**hooks, by); },
         .drag = [this, hooks](MunshiRow::Drag kind, const QPoint& at) { drag(**hooks, kind, at); },
         .focused =
             [this, hooks] {
                 setCurrent(**hooks);
                 ensureWidgetVisible(*hooks, 0, 0);
             },
         .editEnded = [this] { refresh(); }},
        inside_);
    *hooks = row;
    row->setDialoguePalette(palette_);
    row->show();
    return row;
}

/// Tab stops at one row only; the arrows reach the others.
void MunshiDayList::setCurrent(const MunshiRow& current) {
    current_ = current.id();
    for (MunshiRow* row : rows_) {
        row->stop()->setFocusPolicy(row == &current ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void MunshiDayList::reveal(const FellowCore::Uuid& id) {
    const auto& today = book_.ledger().today;
    const auto item = std::ranges::find(today, id, &FellowCore::MunshiItem::id);
    const auto index = static_cast<std::size_t>(item - today.begin());
    if (item != today.end() && index >= limit_) {
        limit_ = index + rowsAtOnce;
        refresh();
    }
    const auto row = std::ranges::find(rows_, id, &MunshiRow::id);
    if (row != rows_.end()) {
        inside_->layout()->activate();
        ensureWidgetVisible(*row, 0, 0);
    }
}

void MunshiDayList::moreAtEnd() {
    const QScrollBar& bar = *verticalScrollBar();
    if (limit_ < book_.ledger().today.size() && bar.value() == bar.maximum()) {
        limit_ += rowsAtOnce;
        refresh();
    }
}

int MunshiDayList::indexOf(const MunshiRow& row) const {
    return static_cast<int>(std::ranges::find(rows_, &row) - rows_.begin());
}

void MunshiDayList::stepFrom(const MunshiRow& row, int by) {
    const int next = indexOf(row) + by;
    if (next >= 0 && next < static_cast<int>(rows_.size())) {
        rows_[static_cast<std::size_t>(next)]->stop()->setFocus(Qt::ShortcutFocusReason);
    } else {
        focusNextPrevChild(by > 0);
    }
}

void MunshiDayList::moveRow(const MunshiRow& row, int by) {
    const FellowCore::Uuid id = row.id();
    book_.move(id, by);
    reveal(id);
}

void MunshiDayList::drag(MunshiRow& row, MunshiRow::Drag drag, const QPoint& global) {
    if (drag == MunshiRow::Drag::moves) {
        const int y = viewport()->mapFromGlobal(global).y();
        const int scroll = y < nearEdge ? -1 : y > viewport()->height() - nearEdge ? 1 : 0;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + scroll * nearEdge / 3);
        viewport()->setCursor(Qt::ClosedHandCursor);
        showDropMark(dropIndex(global));
        return;
    }
    viewport()->unsetCursor();
    dropMark_->hide();
    if (drag == MunshiRow::Drag::dropped) {
        const int from = indexOf(row);
        const int to = dropIndex(global);
        moveRow(row, to > from ? to - 1 - from : to - from);
    }
}

/// Between which rows the pointer is: the index of the row below it.
int MunshiDayList::dropIndex(const QPoint& global) const {
    const int y = inside_->mapFromGlobal(global).y();
    const auto below =
        std::ranges::find_if(rows_, [y](const MunshiRow* row) { return y < row->y() + row->height() / 2; });
    return static_cast<int>(below - rows_.begin());
}

void MunshiDayList::showDropMark(int index) {
    if (rows_.empty()) {
        return;
    }
    const bool atEnd = index >= static_cast<int>(rows_.size());
    const MunshiRow* const near = atEnd ? rows_.back() : rows_[static_cast<std::size_t>(index)];
    const int y = atEnd ? near->y() + near->height() - dropMarkHeight : std::max(0, near->y() - 1);
    dropMark_->setGeometry(near->x(), y, near->width(), dropMarkHeight);
    dropMark_->raise();
    dropMark_->show();
}

} // namespace DeskSprites
