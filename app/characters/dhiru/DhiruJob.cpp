#include "app/characters/dhiru/DhiruJob.h"

#include "app/characters/dhiru/DhiruAbility.h"
#include "app/characters/dhiru/DhiruForm.h"
#include "app/characters/manifest/ManifestCharacterController.h"

#include <QDesktopServices>
#include <QUrl>

namespace DeskSprites {

std::unique_ptr<DesktopCharacter> makeDhiru(Companion companion, CharacterSite& site) {
    auto dhiru = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    dhiru->setAbility(std::make_unique<DhiruAbility>(
        *dhiru, site, [](const QString& url) { return QDesktopServices::openUrl(QUrl(url)); }));
    return dhiru;
}

QWidget* makeDhiruForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent) {
    auto& dhiru = static_cast<ManifestCharacterController&>(character);
    return new DhiruForm(static_cast<DhiruAbility&>(*dhiru.ability()).awake(), site.services.folders, parent);
}

} // namespace DeskSprites
