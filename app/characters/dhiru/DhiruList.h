#pragma once

#include "app/characters/dhiru/DhiruLine.h"
#include "app/desktop/PanelScroll.h"

#include <functional>
#include <vector>

class QVBoxLayout;

namespace DeskSprites {

class DhiruRow;
class PanelText;

/// One of Dhiru's lists. A line keeps its row from one reading to the next, so that focus, scrolling and an
/// open question stay where they are. Tab stops at one row only, the arrows reach the others.
class DhiruList : public PanelScroll {
    Q_OBJECT

public:
    explicit DhiruList(QWidget* parent = nullptr);

    std::function<void(const QString& key, DhiruAct act)> onAct;

    void setDialoguePalette(const DialoguePalette& palette);
    /// The control from which Tab goes on to the rows.
    void setTabAfter(QWidget* before) { before_ = before; }
    void showLines(const DhiruLines& lines);
    /// Marks the row that a question is about and brings it into view; an empty key marks none.
    void setAsked(const QString& key);
    /// Gives the focus to a line's button, or to the line when it has none of it. False without such a line.
    bool focusLine(const QString& key, std::optional<DhiruAct> at);
    /// The rows from top to bottom.
    const std::vector<DhiruRow*>& rows() const { return rows_; }
    DhiruRow* row(const QString& key) const;
    QString words() const;

private:
    DhiruRow* makeRow();
    std::vector<DhiruRow*> wantedRows(const std::vector<DhiruLine>& lines);
    void arrange(const std::vector<DhiruRow*>& wanted);
    void chainTabs();
    void showCurrent();
    void stepFrom(const DhiruRow& row, int by, std::optional<DhiruAct> from);

    DialoguePalette palette_;
    QWidget* inside_;
    QVBoxLayout* column_;
    PanelText* words_;
    QWidget* before_ = nullptr;
    DhiruLines shown_;
    const DhiruRow* current_ = nullptr; ///< that had the focus last, at which Tab stops
    std::vector<DhiruRow*> rows_;
};

} // namespace DeskSprites
