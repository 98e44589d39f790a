#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Munshi with his ledger.
std::unique_ptr<DesktopCharacter> makeMunshi(Companion companion, CharacterSite& site);
/// The settings of the ledger, for the character that `makeMunshi` has made.
QWidget* makeMunshiForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
