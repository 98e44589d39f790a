#pragma once

#include "app/desktop/CharacterPresentation.h"

#include <QMenu>

#include <memory>

namespace DeskSprites {

class MiraController;

/// What Mira says of herself, with her actions.
CharacterPresentation presentMira(MiraController& mira);

/// The rhythms and the saved patterns, the present one marked; a choice is for the next session.
std::unique_ptr<QMenu> rhythmMenu(MiraController& mira);

} // namespace DeskSprites
