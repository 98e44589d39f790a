#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"
#include "app/roster/Companion.h"
#include "app/settings/SettingsForms.h"

#include <memory>
#include <string_view>
#include <vector>

namespace DeskSprites {

/// One line of the table of who does what on the desktop.
struct CharacterJob {
    std::string_view id;
    /// Makes the character with its job. `site` outlives it.
    std::unique_ptr<DesktopCharacter> (*make)(Companion companion, CharacterSite& site);
    /// Makes the settings that are its own, for the character that `make` has made. Absent where it has none.
    QWidget* (*form)(DesktopCharacter& character, CharacterSite& site, QWidget* parent);
};

/// Everyone with a job of their own. Who is not in it stands as a picture that blinks, with a timer where the
/// manifest asks for one.
const std::vector<CharacterJob>& characterJobs();

/// The character of a companion, with its job when it has one.
std::unique_ptr<DesktopCharacter> makeDesktopCharacter(const Companion& companion, CharacterSite& site);

/// A form for a character that exists; nothing when it has no settings of its own.
QWidget* makeSettingsForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
