#include "app/characters/mira/MiraJob.h"

#include "app/characters/mira/MiraController.h"
#include "app/characters/mira/MiraForm.h"

#include <utility>

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makeMira(Companion companion, CharacterSite& site) {
    return std::make_unique<MiraController>(std::move(companion), site);
}

QWidget* makeMiraForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto* mira = dynamic_cast<MiraController*>(&character);
    return mira ? new MiraForm(*mira, parent) : nullptr;
}

} // namespace DeskSprites
