#include "core/art/ManifestCharacterLayout.h"

namespace FellowCore {

Rect ManifestCharacterLayout::anchorRect() const {
    return {ground.x - visible.width / 2, ground.y, visible.width, visible.height};
}

} // namespace FellowCore
