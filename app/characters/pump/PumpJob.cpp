#include "app/characters/pump/PumpJob.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/pump/PumpAbility.h"
#include "app/characters/pump/PumpForm.h"

#include <QCoreApplication>

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makePump(Companion companion, CharacterSite& site) {
    auto pump = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    // Both programs are installed side by side.
    const std::filesystem::path programs = QCoreApplication::applicationDirPath().toStdString();
    pump->setAbility(
        std::make_unique<PumpAbility>(*pump, site, pumpUsageReader(site.services), programs / "fellow-hook"));
    return pump;
}

QWidget* makePumpForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto& pump = static_cast<ManifestCharacterController&>(character);
    return new PumpForm(static_cast<PumpAbility&>(*pump.ability()), parent);
}

} // namespace DeskSprites
