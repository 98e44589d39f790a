#pragma once

#include "app/desktop/CharacterMenus.h"
#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopCommands.h"
#include "app/desktop/QuickActionsPanel.h"

#include <functional>
#include <memory>
#include <vector>

namespace DeskSprites {

/// The panel of quick actions beside the character that was clicked: opened, kept up to date, moved along and
/// closed.
class QuickActions {
public:
    /// Opened by the user, or closed; not on updates.
    std::function<void()> onOpened;
    std::function<void()> onClosed;

    QuickActions(CharacterStage& stage, CharacterMenus& menus, DesktopCommands& commands,
                 DesktopServices& services);
    ~QuickActions();

    /// Opens the panel beside a character, in place of another that is open. Where no place is clear the
    /// character's menu opens instead, so that nothing is out of reach.
    void present(DesktopCharacter& character);
    /// Closes the panel if it belongs to this character, else opens it.
    void toggle(DesktopCharacter& character);
    void dismiss();
    /// Gives the open panel the keyboard, for one that was asked for by a command.
    void takeKeyboard();
    /// Shows what has changed about the character, if its panel is open.
    void update(DesktopCharacter& character);
    /// Re-places the panel after its character has moved.
    void anchor();
    /// Whose panel is open; nothing when none is.
    DesktopCharacter* openFor() const { return character_; }
    std::vector<FellowCore::Rect> obstacles() const;

private:
    QuickActionsContent content(DesktopCharacter& character) const;
    std::vector<QuickAction> footer(DesktopCharacter& character) const;
    SizeRow sizeRow(DesktopCharacter& character) const;
    FellowCore::BubblePlacement placement() const;
    QuickActionsPanel& panel();
    void watchPresses();

    CharacterStage& stage_;
    CharacterMenus& menus_;
    DesktopCommands& commands_;
    DesktopServices& services_;
    std::unique_ptr<QuickActionsPanel> panel_; ///< made when first wanted
    DesktopCharacter* character_ = nullptr;
};

} // namespace DeskSprites
