#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Thumka with her ear on the music.
std::unique_ptr<DesktopCharacter> makeThumka(Companion companion, CharacterSite& site);
/// Her settings, for the character that `makeThumka` has made.
QWidget* makeThumkaForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
