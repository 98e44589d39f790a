#include "app/characters/snake/SnakeJob.h"

#include "app/characters/snake/SnakeAbility.h"
#include "app/characters/snake/SnakeForm.h"

#include <QRandomGenerator>

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makeSnake(Companion companion, CharacterSite& site) {
    auto character = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    const auto anywhere = [](const FellowCore::SnakeFreeCells& free) {
        return free[QRandomGenerator::global()->bounded(free.size())];
    };
    character->setAbility(std::make_unique<SnakeAbility>(*character, site, anywhere));
    return character;
}

QWidget* makeSnakeForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto* controller = dynamic_cast<ManifestCharacterController*>(&character);
    auto* ability = controller ? dynamic_cast<SnakeAbility*>(controller->ability()) : nullptr;
    return ability ? new SnakeForm(ability->store(), ability->preferences(), parent) : nullptr;
}

} // namespace DeskSprites
