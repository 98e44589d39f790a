#pragma once

#include "core/art/BubblePlacement.h"

/// Where the panel of a character's quick actions opens.
namespace FellowCore::CharacterActionsLayout {

constexpr double gap = 8; ///< points between the art and the panel

/// As `BubblePlacement::resolve`, with the pointer at the middle of the panel's side.
BubblePlacement resolve(const Rect& artwork, double faceY, const Rect& visible, Size size,
                        std::span<const Rect> avoiding);

} // namespace FellowCore::CharacterActionsLayout
