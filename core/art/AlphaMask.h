#pragma once

#include "core/base/Geometry.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace FellowCore {

/// A pixel of art counts as opaque when its alpha is above this.
constexpr std::uint8_t opaqueAlphaThreshold = 20;

/// A block of whole art pixels, y downwards from the top of the canvas; the right and lower edges are
/// outside.
struct AlphaRun {
    int x0 = 0;
    int y0 = 0;
    int x1 = 0;
    int y1 = 0;

    friend bool operator==(const AlphaRun&, const AlphaRun&) = default;
};

/// Alpha bytes, one a pixel, row by row from the top, without padding. Does not own them; holds exactly
/// `width` x `height` bytes.
struct AlphaMask {
    std::span<const std::uint8_t> bytes;
    int width = 0;
    int height = 0;

    /// Whether the art is opaque at a point given from 0 (inclusive) to 1 (exclusive) on both axes, y
    /// upwards.
    bool opaque(Point normalized) const;
    /// The smallest block around all opaque pixels, or nothing when there is none.
    std::optional<AlphaRun> opaqueBounds() const;
    /// Disjoint blocks that cover exactly the opaque pixels, from the top and then from the left.
    /// Neighbouring rows with the same runs share their blocks, so a window's input region takes few
    /// rectangles.
    std::vector<AlphaRun> alphaRuns() const;
};

} // namespace FellowCore
