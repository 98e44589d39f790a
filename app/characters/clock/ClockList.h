#pragma once

#include "app/characters/clock/ClockRow.h"
#include "app/desktop/PanelRowList.h"

#include <string>
#include <vector>

namespace DeskSprites {

class ClockCharacter;
class ClockEdits;

/// Every clock of the user's, home first.
class ClockList : public PanelRowList {
    Q_OBJECT

public:
    /// Both outlive the list.
    ClockList(ClockCharacter& clock, ClockEdits& edits, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// Takes the clocks as they are shown now.
    void refresh();
    /// Brings a clock into view.
    void revealClock(const std::string& identifier);
    /// Gives the keyboard to a clock.
    void turnTo(const std::string& identifier);

private:
    ClockRow* makeRow(const std::string& identifier);
    ClockRow* rowOf(const std::string& identifier) const;

    ClockCharacter& clock_;
    ClockEdits& edits_;
    DialoguePalette palette_;
};

} // namespace DeskSprites
