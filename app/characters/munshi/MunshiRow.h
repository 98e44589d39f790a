#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/ledger/MunshiItem.h"

#include <QWidget>

#include <functional>
#include <string>

namespace DeskSprites {

class PanelButton;
class PanelCheckBox;
class PanelField;

/// One line of today. Its box checks it off; Space does the same, Enter or F2 or a double click edits it
/// where it stands, Delete deletes it, Alt with Up or Down moves it, and so does dragging it by its words.
class MunshiRow : public QWidget {
    Q_OBJECT

public:
    enum class Drag { moves, dropped, givenUp };
    /// What the row asks for. It may be gone when a call returns.
    struct Hooks {
        std::function<void(bool done)> check;
        std::function<void(const QString& text)> rewrite;
        std::function<void()> remove;
        std::function<void(int by)> move;
        std::function<void(int by)> step; ///< the focus to another row
        std::function<void(Drag drag, const QPoint& global)> drag;
        std::function<void()> focused;
        std::function<void()> editEnded;
    };

    MunshiRow(FellowCore::Uuid id, Hooks hooks, QWidget* parent = nullptr);

    const FellowCore::Uuid& id() const { return id_; }
    void setDialoguePalette(const DialoguePalette& palette);
    /// Shows the line as it stands now; text that is being edited stays.
    void showItem(const FellowCore::MunshiItem& item, const std::string& today);
    void beginEdit();
    bool isEditing() const { return editor_ != nullptr; }
    /// What Tab and the arrows stop at.
    QWidget* stop() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool lineKey(int key, Qt::KeyboardModifiers modifiers);
    bool lineMouse(QEvent& event);
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
    QPoint pressed_;   ///< where a drag may begin, global
    bool maybeDrag_ = false;
    bool dragging_ = false;
};

} // namespace DeskSprites
