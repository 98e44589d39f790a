#include "app/characters/clock/ClockList.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockEdits.h"

#include <algorithm>

namespace DeskSprites {

ClockList::ClockList(ClockCharacter& clock, ClockEdits& edits, QWidget* parent)
    : PanelRowList(parent), clock_(clock), edits_(edits) {
    setAccessibleName(tr("Clocks"));
    onMove = [this](PanelRow& row, int by) {
        const std::string identifier = static_cast<ClockRow&>(row).identifier();
        edits_.move(identifier, by);
        revealClock(identifier);
    };
}

void ClockList::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    PanelRowList::setDialoguePalette(palette);
    for (PanelRow* row : rows()) {
        static_cast<ClockRow*>(row)->setDialoguePalette(palette);
    }
}

void ClockList::refresh() {
    const auto shown = clock_.rows();
    const bool homeIsChosen = clock_.state().homeTimeZoneIdentifier.has_value();
    std::vector<PanelRow*> wanted;
    for (const FellowCore::WorldClockRow& row : shown) {
        ClockRow* const known = rowOf(row.identifier);
        ClockRow* const own = known != nullptr ? known : makeRow(row.identifier);
        own->showRow(row, homeIsChosen, clock_.isPreviewing());
        wanted.push_back(own);
    }
    arrange(wanted);
}

ClockRow* ClockList::makeRow(const std::string& identifier) {
    auto* row = new ClockRow(identifier, rowParent());
    row->setDialoguePalette(palette_);
    // With an identifier of its own, for the row may be gone while its wish is fulfilled.
    row->onWish = [this, identifier](ClockWish wish) { edits_.take(std::string(identifier), wish); };
    return row;
}

ClockRow* ClockList::rowOf(const std::string& identifier) const {
    for (PanelRow* row : rows()) {
        auto* const clock = static_cast<ClockRow*>(row);
        if (clock->identifier() == identifier) {
            return clock;
        }
    }
    return nullptr;
}

void ClockList::revealClock(const std::string& identifier) {
    if (ClockRow* const row = rowOf(identifier)) {
        reveal(*row);
    }
}

void ClockList::turnTo(const std::string& identifier) {
    if (ClockRow* const row = rowOf(identifier)) {
        row->stop()->setFocus(Qt::ShortcutFocusReason);
    }
}

} // namespace DeskSprites
