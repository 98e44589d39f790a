#pragma once

#include "core/base/Geometry.h"

namespace FellowCore {

/// Whether a size is one at rest, at which one art pixel is a whole number of device pixels where that is
/// possible, or a step of a drag, which follows the pointer.
enum class Sizing { snapped, continuous };

/// The arithmetic that keeps pixel art crisp at any size. A backing scale is device pixels for each point;
/// below 1 or not finite it counts as 1. A visible fraction is the part of the canvas's height that the
/// desktop height covers; it counts as 1 unless it is a positive normal number.
struct ArtPixelGrid {
    Size canvas; ///< in art pixels, at least 1 by 1

    explicit ArtPixelGrid(Size size);
    /// The grid of an image of `source` pixels in which one art pixel spans `sourcePixelPitch` of them: the
    /// quotient rounded half away from zero. A pitch that is not finite and positive counts as 1.
    ArtPixelGrid(Size source, double sourcePixelPitch);

    /// Points for one art pixel when the visible art is to be `visibleHeight` points high.
    double unit(double visibleHeight, double visibleFraction, double backingScale, Sizing sizing) const;
    /// The height that `unit` works with: forced into the limits of `DesktopSize` and, unless continuous,
    /// snapped.
    double effectiveHeight(double visibleHeight, double visibleFraction, double backingScale,
                           Sizing sizing) const;
    /// The height closest to the wished one, from 140 to 600, at which one art pixel is a whole number of
    /// device pixels; the limits themselves are always among the choices.
    double snappedVisibleHeight(double visibleHeight, double visibleFraction, double backingScale) const;

    /// The canvas fitted into `bounds`, centred, its origin on whole device pixels; the same at rest and in a
    /// drag.
    Rect rect(const Rect& bounds, double backingScale) const;
    /// The point moved to the nearest device pixel, halves away from zero. A coordinate that is not finite
    /// becomes 0.
    static Point snap(Point point, double backingScale);
};

} // namespace FellowCore
