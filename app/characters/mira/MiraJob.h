#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Mira for the desktop.
std::unique_ptr<DesktopCharacter> makeMira(Companion companion, CharacterSite& site);
/// Her settings. `character` is what `makeMira` made.
QWidget* makeMiraForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
