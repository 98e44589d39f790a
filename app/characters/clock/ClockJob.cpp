#include "app/characters/clock/ClockJob.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockForm.h"
#include "app/characters/manifest/ManifestCharacterController.h"

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makeClock(Companion companion, CharacterSite& site) {
    auto tower = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    tower->setAbility(std::make_unique<ClockCharacter>(*tower, site));
    return tower;
}

QWidget* makeClockForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto& tower = static_cast<ManifestCharacterController&>(character);
    return new ClockForm(static_cast<ClockCharacter&>(*tower.ability()), parent);
}

} // namespace DeskSprites
