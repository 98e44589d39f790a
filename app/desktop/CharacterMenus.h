#pragma once

#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopCommands.h"

#include <QMenu>

#include <memory>

namespace DeskSprites {

/// The menus: a character's own on the right button, the one in the tray, and the lists of who may come.
class CharacterMenus {
public:
    CharacterMenus(CharacterStage& stage, DesktopCommands& commands);

    /// Everything one can do with this character and with the desktop.
    std::unique_ptr<QMenu> characterMenu(DesktopCharacter& character) const;
    /// The tray's menu, filled into an empty one.
    void fillTrayMenu(QMenu& menu) const;
    /// Whom to bring out beside the others.
    std::unique_ptr<QMenu> bringMenu() const;
    /// Whom to put in this one's place.
    std::unique_ptr<QMenu> swapMenu(const DesktopCharacter& character) const;

private:
    void addOwnActions(QMenu& menu, DesktopCharacter& character) const;
    void addPlaces(QMenu& menu, const DesktopCharacter& character) const;
    void addSizes(QMenu& menu, DesktopCharacter& character) const;
    void addArrange(QMenu& menu) const;
    void addProgram(QMenu& menu, const std::optional<std::string>& pane) const;

    CharacterStage& stage_;
    DesktopCommands& commands_;
};

} // namespace DeskSprites
