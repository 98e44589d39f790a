#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Ghanta Ghar with its clocks.
std::unique_ptr<DesktopCharacter> makeClock(Companion companion, CharacterSite& site);
/// The settings of the clocks, for the character that `makeClock` has made.
QWidget* makeClockForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
