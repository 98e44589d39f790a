#include "app/characters/thumka/ThumkaJob.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/thumka/ThumkaAbility.h"
#include "app/characters/thumka/ThumkaForm.h"
#include "core/nowplaying/NowPlayingHelper.h"
#include "platform/InstalledApplications.h"

#include <QCoreApplication>

namespace DeskSprites {

namespace {

/// An application's name by its desktop entry. The entries are looked through only when another one plays.
class InstalledName {
public:
    std::optional<std::string> operator()(const std::string& id) {
        if (id != id_) {
            const auto found = Platform::installedApplication(id);
            id_ = id;
            name_ = found ? std::optional(found->name) : std::nullopt;
        }
        return name_;
    }

private:
    std::string id_;
    std::optional<std::string> name_;
};

} // namespace

std::unique_ptr<DesktopCharacter> makeThumka(Companion companion, CharacterSite& site) {
    auto thumka = std::make_unique<ManifestCharacterController>(std::move(companion), site.services);
    // Both programs are installed side by side.
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                            QLatin1String(FellowCore::NowPlayingHelper::programName);
    thumka->setAbility(std::make_unique<ThumkaAbility>(*thumka, site, program, InstalledName()));
    return thumka;
}

QWidget* makeThumkaForm(DesktopCharacter& character, CharacterSite&, QWidget* parent) {
    auto& thumka = static_cast<ManifestCharacterController&>(character);
    return new ThumkaForm(static_cast<ThumkaAbility&>(*thumka.ability()), parent);
}

} // namespace DeskSprites
