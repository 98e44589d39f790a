#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Pump with its gauge.
std::unique_ptr<DesktopCharacter> makePump(Companion companion, CharacterSite& site);
/// The settings of the gauge, for the character that `makePump` has made.
QWidget* makePumpForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
