#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Dhiru with his watch.
std::unique_ptr<DesktopCharacter> makeDhiru(Companion companion, CharacterSite& site);
/// The settings of the watch, for the character that `makeDhiru` has made.
QWidget* makeDhiruForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
