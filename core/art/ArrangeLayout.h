#pragma once

#include "core/base/Geometry.h"
#include "core/base/Instant.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// Lining up the characters along an edge of the screen. Lengths are in points.
namespace FellowCore::ArrangeLayout {

enum class Edge { right, bottom };

/// "right" or "bottom", as preferences keep it.
std::string_view rawValue(Edge edge);
std::optional<Edge> edgeFromRawValue(std::string_view text);

constexpr double margin = 12;              ///< to the screen's edges and between characters
constexpr double paddingPerCharacter = 32; ///< a window's paddings on both sides of the art
constexpr double compactHeightCeiling = 180;
constexpr Seconds animationDuration = 0.28;
constexpr Seconds animationStep = 1.0 / 60;

/// How much room one character takes: its height and its window's size for each point of that height.
struct Metrics {
    double height = 0;
    Size canvasPerHeight;

    /// A height that is not finite counts as 320. When it is not positive, or the window's size is no use,
    /// the window counts as one point for each point of height.
    Metrics(double height, Size window);
};

/// The one height for the "Compact" option at which all fit along either edge: never above 180, never above
/// the smallest present height, never negative.
double compactHeight(std::span<const Metrics> characters, const Rect& visible);

/// The characters' heights, all scaled alike so that they fit along `edge`; never enlarged.
std::vector<double> fittedHeights(std::span<const Metrics> characters, Edge edge, const Rect& visible);

/// A frame for each window size, in the same order; the last one stands in the lower right corner.
std::vector<Rect> frames(std::span<const Size> sizes, Edge edge, const Rect& visible);

/// How far an animation has come, 0...1, fast at first and soft at the end: 1 - (1 - t)^4 with t the elapsed
/// part of `duration`. A duration that is not positive is over at once.
double progress(Seconds elapsed, Seconds duration);

} // namespace FellowCore::ArrangeLayout
