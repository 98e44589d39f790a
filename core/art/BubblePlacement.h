#pragma once

#include "core/base/Geometry.h"

#include <optional>
#include <span>

namespace FellowCore {

/// Where a bubble or panel stands beside a character, and where its pointer sits. Screen coordinates.
struct BubblePlacement {
    static constexpr double screenMargin = 8; ///< clear points between a bubble and the edge of `visible`

    Rect frame;
    bool pointerOnLeft = false; ///< the pointer is on the bubble's left side; the character stands left of it
    double pointerY = 0;        ///< height of the pointer's tip above the bubble's bottom
    bool canPresent = false;    ///< no place was clear when false: do not open the bubble

    /// Left of `artwork` when that side has room or has no less room than the right, else right of it; then,
    /// when there are obstacles in `avoiding`, the nearest place clear of them and of the artwork.
    ///
    /// `faceY` is where the pointer should point, `pointerOffset` how far above the bubble's bottom the
    /// pointer sits when nothing pushes it. `reserveWidth`, when wider than the bubble, is the width that
    /// must fit for a side to count as free, so that a bubble that will grow does not change sides. Obstacles
    /// that are empty or not finite are ignored. Without obstacles the place is always presentable.
    static BubblePlacement resolve(const Rect& artwork, double faceY, const Rect& visible, Size size,
                                   double pointerOffset, std::optional<double> reserveWidth, double gap,
                                   std::span<const Rect> avoiding);

    /// The place nearest to `wanted` that lies inside `visible` less the screen margin and meets no obstacle,
    /// among those flush with the wanted place, the edges or an obstacle (`gap` away from it). With none,
    /// `wanted`.
    static Rect clearFrame(const Rect& wanted, const Rect& visible, std::span<const Rect> obstacles,
                           double gap);

    friend bool operator==(const BubblePlacement&, const BubblePlacement&) = default;
};

} // namespace FellowCore
