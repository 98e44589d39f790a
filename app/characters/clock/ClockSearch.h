#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/worldclock/WorldClockSearchSelection.h"

#include <QWidget>

#include <functional>
#include <string>

class QListView;

namespace DeskSprites {

class ClockCharacter;
class ClockSearchDelegate;
class ClockSearchModel;
class PanelField;
class PanelScrollBar;
class PanelText;

/// What is found of the words in a field. The keyboard stays in the field: Up and Down choose among the
/// cities, Enter takes the chosen one, or the first, and Escape clears the field.
class ClockSearch : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the search.
    ClockSearch(ClockCharacter& clock, PanelField& field, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// Whether there are words to search for.
    bool isSearching() const;
    /// The clocks show another minute, the list is another one, or the search has become ready.
    void refresh();
    /// A field without words, and nothing found.
    void clear();
    QListView& view() const { return *view_; }

    /// There are words to search for, or none any more.
    std::function<void()> onSearching;
    /// The user takes a city.
    std::function<void(const std::string& identifier)> onTaken;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool key(int key);
    void search();
    void move(int by);
    void showSelection();
    void showCount();
    void describeField();
    void take(int row);

    ClockCharacter& clock_;
    PanelField& field_;
    ClockSearchModel* model_;
    ClockSearchDelegate* delegate_;
    QListView* view_;
    PanelScrollBar* bar_;
    PanelText* none_;
    PanelText* more_;
    FellowCore::WorldClockSearchSelection selection_;
    bool waits_ = false; ///< for the search to become ready
};

} // namespace DeskSprites
