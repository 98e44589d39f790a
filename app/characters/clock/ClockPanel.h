#pragma once

#include "app/desktop/Bubble.h"

#include <functional>
#include <memory>
#include <string>

class QStackedWidget;

namespace DeskSprites {

class ClockCharacter;
class ClockEdits;
class ClockList;
class ClockSearch;
class ClockTravelBar;
class PanelButton;
class PanelField;
class PanelMessage;
class PanelText;

/// Ghanta Ghar's panel, open: every clock the user chose, the search for more, and the slider that walks all
/// of them through the day. It keeps one size, so that nothing moves under the hand that types.
class ClockPanel : public Bubble {
    Q_OBJECT

public:
    /// `clock` outlives the panel.
    explicit ClockPanel(ClockCharacter& clock);
    ~ClockPanel() override;

    /// The user wants the settings.
    std::function<void()> onSettings;
    /// Takes the room there is: `visibleHeight` is the screen's, in points. Before each `present`.
    void fitInto(double visibleHeight);
    /// Gives the keyboard to the panel, with the focus on the search.
    void takeKeyboard();

    PanelField& field() const { return *field_; }
    ClockSearch& search() const { return *search_; }
    ClockList& list() const { return *list_; }
    ClockTravelBar& travel() const { return *travel_; }
    PanelMessage& message() const { return *message_; }

protected:
    void paletteChanged() override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeHeader();
    void makeField();
    void joinParts();
    void orderTabs();
    void refresh();
    void showPage();
    void take(const std::string& identifier);
    bool beginSearch(const QKeyEvent& key);

    ClockCharacter& clock_;
    QWidget* inside_;
    QWidget* column_;
    PanelText* title_ = nullptr;
    PanelButton* settings_ = nullptr;
    PanelButton* close_ = nullptr;
    PanelField* field_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    PanelMessage* message_ = nullptr;
    std::unique_ptr<ClockEdits> edits_;
    ClockList* list_ = nullptr;
    ClockSearch* search_ = nullptr;
    ClockTravelBar* travel_ = nullptr;
};

} // namespace DeskSprites
