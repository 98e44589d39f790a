#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"
#include "app/roster/Companion.h"

#include <memory>

class QWidget;

namespace DeskSprites {

/// Snake with her game.
std::unique_ptr<DesktopCharacter> makeSnake(Companion companion, CharacterSite& site);
/// Her settings; `character` was made by `makeSnake`.
QWidget* makeSnakeForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent);

} // namespace DeskSprites
