#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PanelRowList.h"
#include "core/ledger/MunshiItem.h"

#include <functional>
#include <string>

namespace DeskSprites {

class PanelButton;
class PanelCheckBox;
class PanelField;

/// One line of today. Its box checks it off; Space does the same, Enter or F2 or a double click edits it
/// where it stands, Delete deletes it, Alt with Up or Down moves it, and so does dragging it by its words.
class MunshiRow : public PanelRow {
    Q_OBJECT

public:
    /// What the row asks for. It may be gone when a call returns.
    struct Hooks {
        std::function<void(bool done)> check;
        std::function<void(const QString& text)> rewrite;
        std::function<void()> remove;
        std::function<void(int by)> move;
        std::function<void()> editEnded;
    };

    MunshiRow(FellowCore::Uuid id, Hooks hooks, QWidget* parent = nullptr);

    const FellowCore::Uuid& id() const { return id_; }
    void setDialoguePalette(const DialoguePalette& palette);
    /// Shows the line as it stands now; text that is being edited stays.
    void showItem(const FellowCore::MunshiItem& item, const std::string& today);
    void beginEdit();
    bool isEditing() const { return editor_ != nullptr; }
    QWidget* stop() const override;
    bool dragsFrom(const QPoint& place) const override;
    void showDragging(bool isDragging) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool lineKey(int key, Qt::KeyboardModifiers modifiers);
    bool editorEvent(QEvent& event);
    void endEdit(bool keep);
    void placeEditor();
    void showButtons();

    FellowCore::Uuid id_;
    Hooks hooks_;
    DialoguePalette palette_;
    PanelCheckBox* line_;
    PanelButton* edit_;
    PanelButton* delete_;
    PanelField* editor_ = nullptr;
    QString editable_; ///< the text as an editor begins with it
    bool dragging_ = false;
};

} // namespace DeskSprites
