#include "app/characters/munshi/MunshiDayList.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/desktop/PanelControls.h"

#include <algorithm>
#include <map>

namespace DeskSprites {

MunshiDayList::MunshiDayList(MunshiBook& book, QWidget* parent)
    : PanelRowList(parent), book_(book), empty_(new PanelText(TextRole::quiet, rowParent())) {
    setHeading(empty_);
    empty_->setContentsMargins(PanelMetrics::halfUnit, PanelMetrics::unit, 0, 0);
    setAccessibleName(tr("Today's lines"));
    onMove = [this](PanelRow& row, int by) { moveLine(static_cast<MunshiRow&>(row).id(), by); };
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { moreAtEnd(); });
}

void MunshiDayList::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    PanelRowList::setDialoguePalette(palette);
    empty_->setDialoguePalette(palette);
    for (MunshiRow* row : lines()) {
        row->setDialoguePalette(palette);
    }
}

std::vector<MunshiRow*> MunshiDayList::lines() const {
    std::vector<MunshiRow*> all;
    for (PanelRow* row : rows()) {
        all.push_back(static_cast<MunshiRow*>(row));
    }
    return all;
}

bool MunshiDayList::isEditing() const {
    return std::ranges::any_of(lines(), &MunshiRow::isEditing);
}

void MunshiDayList::refresh() {
    const FellowCore::MunshiLedger& ledger = book_.ledger();
    empty_->setText(book_.isRead() ? tr("Nothing is written down for today.") : tr("Opening the ledger…"));
    empty_->setVisible(ledger.today.empty());
    arrange(wantedRows());
    std::map<FellowCore::Uuid, MunshiRow*> byId;
    for (MunshiRow* row : lines()) {
        byId.emplace(row->id(), row);
    }
    for (const FellowCore::MunshiItem& item : ledger.today) {
        if (const auto row = byId.find(item.id); row != byId.end()) {
            row->second->showItem(item, ledger.currentDay);
        }
    }
}

/// The rows of the lines, new ones made; a row whose line has gone while it was edited keeps its place.
std::vector<PanelRow*> MunshiDayList::wantedRows() {
    const std::vector<MunshiRow*> shown = lines();
    std::map<FellowCore::Uuid, MunshiRow*> known;
    for (MunshiRow* row : shown) {
        known.emplace(row->id(), row);
    }
    const auto& today = book_.ledger().today;
    std::vector<PanelRow*> wanted;
    for (std::size_t index = 0; index < std::min(limit_, today.size()); ++index) {
        const auto found = known.find(today[index].id);
        wanted.push_back(found != known.end() ? found->second : makeRow(today[index].id));
    }
    for (std::size_t index = 0; index < shown.size(); ++index) {
        if (shown[index]->isEditing() && std::ranges::find(wanted, shown[index]) == wanted.end()) {
            const auto place = std::min(index, wanted.size());
            wanted.insert(wanted.begin() + static_cast<std::ptrdiff_t>(place), shown[index]);
        }
    }
    return wanted;
}

MunshiRow* MunshiDayList::makeRow(const FellowCore::Uuid& id) {
    auto* row = new MunshiRow(id,
                              {.check = [this, id](bool done) { book_.setDone(id, done); },
                               .rewrite = [this, id](const QString& text) { book_.edit(id, text); },
                               .remove = [this, id] { book_.remove(id); },
                               .move = [this, id](int by) { moveLine(FellowCore::Uuid(id), by); },
                               .editEnded = [this] { refresh(); }},
                              rowParent());
    row->setDialoguePalette(palette_);
    return row;
}

void MunshiDayList::moveLine(const FellowCore::Uuid& id, int by) {
    const FellowCore::Uuid line = id; // its row may be gone afterwards
    book_.move(line, by);
    revealLine(line);
}

void MunshiDayList::revealLine(const FellowCore::Uuid& id) {
    const auto& today = book_.ledger().today;
    const auto item = std::ranges::find(today, id, &FellowCore::MunshiItem::id);
    const auto index = static_cast<std::size_t>(item - today.begin());
    if (item != today.end() && index >= limit_) {
        limit_ = index + rowsAtOnce;
        refresh();
    }
    for (MunshiRow* row : lines()) {
        if (row->id() == id) {
            reveal(*row);
        }
    }
}

void MunshiDayList::moreAtEnd() {
    const QScrollBar& bar = *verticalScrollBar();
    if (limit_ < book_.ledger().today.size() && bar.value() == bar.maximum()) {
        limit_ += rowsAtOnce;
        refresh();
    }
}

} // namespace DeskSprites
