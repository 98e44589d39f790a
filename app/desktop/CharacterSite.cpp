#include "app/desktop/CharacterSite.h"

#include "app/desktop/DesktopCharacter.h"

namespace DeskSprites {

bool comeOut(const DesktopCharacter& character, CharacterSite& site) {
    if (!character.isShown() && !site.commands.isVisible()) {
        site.commands.toggleVisible();
    }
    if (!character.isShown()) {
        site.commands.bringOut(character.identifier()); // says itself why it cannot come
    }
    return character.isShown();
}

} // namespace DeskSprites
