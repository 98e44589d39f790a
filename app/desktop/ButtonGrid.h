#pragma once

#include "app/desktop/PanelButton.h"

#include <QGridLayout>
#include <QPointer>

#include <map>
#include <vector>

namespace DeskSprites {

/// A set of buttons that follows a list of actions, reusing the buttons whose ids stay.
class ButtonGrid : public QWidget {
    Q_OBJECT

public:
    enum class Arrangement {
        pairs, ///< all share rows by two
        rows,  ///< a primary action has a row of its own, the others share rows by two
        tiles, ///< all in one row, equally wide, the icon above the word
    };

    explicit ButtonGrid(Arrangement arrangement, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// True when buttons came, went or changed places.
    bool setActions(const std::vector<QuickAction>& actions);
    /// The buttons in reading order.
    std::vector<PanelButton*> buttons() const;
    /// The button of an action that is shown, or null.
    PanelButton* button(const QString& id) const;
    /// After a press that was not a menu's, before the action's own closure.
    std::function<void()> onPressed;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    struct Entry {
        PanelButton* button = nullptr;
        QuickAction action;
    };
    bool sameArrangement(const std::vector<QuickAction>& actions) const;
    void rearrange(const std::vector<QuickAction>& actions);
    bool standsAlone(std::size_t index) const;
    void fillGrid();
    void update(Entry& entry, const QuickAction& action);
    void press(const QString& id);

    Arrangement arrangement_;
    DialoguePalette palette_;
    QGridLayout* grid_;
    std::map<QString, Entry> entries_;
    std::vector<QString> order_;
    QPointer<QMenu> openMenu_;
};

/// Whether the Tab key stops at `widget`.
bool takesTab(const QWidget& widget);
/// Moves the focus from the focused control inside `root` to the nearest one in the direction of an arrow
/// key. False when the key is no arrow or nothing lies there.
bool moveFocusByArrow(QWidget& root, int key);

} // namespace DeskSprites
