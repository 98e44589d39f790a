#pragma once

#include "app/characters/munshi/MunshiRow.h"
#include "app/desktop/PanelScroll.h"
#include "core/ledger/MunshiLedger.h"

#include <map>
#include <vector>

class QVBoxLayout;

namespace DeskSprites {

class MunshiBook;
class PanelText;

/// Today's lines as rows that scroll. Rows stay the same widgets while their lines stay, so that nothing that
/// is being typed, focused or dragged is disturbed by what happens to the others.
class MunshiDayList : public PanelScroll {
    Q_OBJECT

public:
    /// `book` outlives the list.
    explicit MunshiDayList(MunshiBook& book, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// The control from which Tab goes on to the lines.
    void setTabAfter(QWidget* before) { before_ = before; }
    /// Takes the book's lines.
    void refresh();
    /// Brings a line into view.
    void reveal(const FellowCore::Uuid& id);
    /// The rows from top to bottom.
    const std::vector<MunshiRow*>& rows() const { return rows_; }
    bool isEditing() const;

private:
    /// So many rows are made at first, and so many more each time the end is reached.
    static constexpr std::size_t rowsAtOnce = 200;

    MunshiRow* makeRow(const FellowCore::Uuid& id);
    std::vector<MunshiRow*> wantedRows();
    void arrange(const std::vector<MunshiRow*>& wanted);
    void setCurrent(const MunshiRow& current);
    void stepFrom(const MunshiRow& row, int by);
    void moveRow(const MunshiRow& row, int by);
    void drag(MunshiRow& row, MunshiRow::Drag drag, const QPoint& global);
    int dropIndex(const QPoint& global) const;
    void showDropMark(int index);
    void moreAtEnd();
    int indexOf(const MunshiRow& row) const;

    MunshiBook& book_;
    DialoguePalette palette_;
    QWidget* inside_;
    QVBoxLayout* column_;
    PanelText* empty_;
    QWidget* dropMark_;
    QWidget* before_ = nullptr;
    std::size_t limit_ = rowsAtOnce;
    FellowCore::Uuid current_; ///< of the row at which Tab stops
    std::vector<MunshiRow*> rows_;
};

} // namespace DeskSprites
