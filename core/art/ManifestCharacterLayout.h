#pragma once

#include "core/art/DesktopSize.h"
#include "core/base/Geometry.h"

namespace FellowCore {

/// Where a character's art stands in its window at one size. In points, y upwards, (0, 0) the window's lower
/// left corner.
struct ManifestCharacterLayout {
    static constexpr double padding = DesktopSize::windowPadding; ///< canvas to each edge of the window

    double unit = 1; ///< points for one art pixel
    Size size;       ///< of the window
    Rect artwork;    ///< the whole canvas
    Rect visible;    ///< the opaque art
    Point face;
    Point ground;

    /// The rectangle that placement takes for the character: `visible` in size, but standing on the ground
    /// line with the ground point in the middle of its base.
    Rect anchorRect() const;

    friend bool operator==(const ManifestCharacterLayout&, const ManifestCharacterLayout&) = default;
};

} // namespace FellowCore
