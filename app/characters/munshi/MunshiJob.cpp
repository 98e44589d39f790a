#include "app/characters/munshi/MunshiJob.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/munshi/MunshiAbility.h"
#include "app/characters/munshi/MunshiForm.h"
#include "platform/LocalCalendar.h"

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makeMunshi(Companion companion, CharacterSite& site) {
    auto munshi = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    munshi->setAbility(std::make_unique<MunshiAbility>(*munshi, site, Platform::localCalendar));
    return munshi;
}

QWidget* makeMunshiForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto& munshi = static_cast<ManifestCharacterController&>(character);
    auto& ability = static_cast<MunshiAbility&>(*munshi.ability());
    return new MunshiForm(ability.book(), ability.shortcut(), parent);
}

} // namespace DeskSprites
