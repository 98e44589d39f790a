#include "core/art/CharacterActionsLayout.h"

namespace FellowCore::CharacterActionsLayout {

BubblePlacement resolve(const Rect& artwork, double faceY, const Rect& visible, Size size,
                        std::span<const Rect> avoiding) {
    return BubblePlacement::resolve(artwork, faceY, visible, size, size.height / 2, size.width, gap,
                                    avoiding);
}

} // namespace FellowCore::CharacterActionsLayout
