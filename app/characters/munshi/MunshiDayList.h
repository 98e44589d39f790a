#pragma once

#include "app/characters/munshi/MunshiRow.h"
#include "app/desktop/PanelRowList.h"
#include "core/ledger/MunshiLedger.h"

#include <vector>

namespace DeskSprites {

class MunshiBook;
class PanelText;

/// Today's lines.
class MunshiDayList : public PanelRowList {
    Q_OBJECT

public:
    /// `book` outlives the list.
    explicit MunshiDayList(MunshiBook& book, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// Takes the book's lines.
    void refresh();
    /// Brings a line into view.
    void revealLine(const FellowCore::Uuid& id);
    /// The rows from top to bottom.
    std::vector<MunshiRow*> lines() const;
    bool isEditing() const;

private:
    /// So many rows are made at first, and so many more each time the end is reached.
    static constexpr std::size_t rowsAtOnce = 200;

    MunshiRow* makeRow(const FellowCore::Uuid& id);
    std::vector<PanelRow*> wantedRows();
    void moveLine(const FellowCore::Uuid& id, int by);
    void moreAtEnd();

    MunshiBook& book_;
    DialoguePalette palette_;
    PanelText* empty_;
    std::size_t limit_ = rowsAtOnce;
};

} // namespace DeskSprites
