#include "core/art/ArrangeLayout.h"

#include "core/art/DesktopSize.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace FellowCore::ArrangeLayout {

namespace {

// What is left of a screen's length for the art of `count` characters in a row.
double roomAlong(double length, std::size_t count) {
    const double characters = static_cast<double>(count);
    return length - characters * paddingPerCharacter - (characters + 1) * margin;
}

double ratioOf(double window, double height) {
    const double ratio = window / height;
    return height > 0 && ratio > 0 && std::isfinite(ratio) ? ratio : 1;
}

struct Extent {
    double along = 0;
    double tallest = 0;
};

Extent extentOf(std::span<const Metrics> characters, Edge edge) {
    Extent extent;
    for (const Metrics& character : characters) {
        const double width = character.height * character.canvasPerHeight.width;
        const double height = character.height * character.canvasPerHeight.height;
        extent.along += edge == Edge::bottom ? width : height;
        extent.tallest = std::max(extent.tallest, edge == Edge::bottom ? height : width);
    }
    return {std::max(extent.along, 1.0), std::max(extent.tallest, 1.0)};
}

} // namespace

std::string_view rawValue(Edge edge) {
    return edge == Edge::right ? "right" : "bottom";
}

std::optional<Edge> edgeFromRawValue(std::string_view text) {
    for (const Edge edge : {Edge::right, Edge::bottom}) {
        if (rawValue(edge) == text) {
            return edge;
        }
    }
    return std::nullopt;
}

Metrics::Metrics(double current, Size window)
    : height(std::isfinite(current) ? current : DesktopSize::standardHeight),
      canvasPerHeight{ratioOf(window.width, height), ratioOf(window.height, height)} {}

double compactHeight(std::span<const Metrics> characters, const Rect& visible) {
    double smallest = compactHeightCeiling;
    Size sum;
    for (const Metrics& character : characters) {
        smallest = std::min(smallest, character.height);
        sum.width += character.canvasPerHeight.width;
        sum.height += character.canvasPerHeight.height;
    }
    if (characters.empty()) {
        return smallest;
    }
    const double fit = std::min(roomAlong(visible.width, characters.size()) / sum.width,
                                roomAlong(visible.height, characters.size()) / sum.height);
    return std::max(0.0, std::min(smallest, fit));
}

std::vector<double> fittedHeights(std::span<const Metrics> characters, Edge edge, const Rect& visible) {
    const auto [length, cross] = edge == Edge::bottom ? std::pair(visible.width, visible.height)
                                                      : std::pair(visible.height, visible.width);
    const Extent extent = extentOf(characters, edge);
    const double alongScale = roomAlong(length, characters.size()) / extent.along;
    const double crossScale = (cross - 2 * margin - paddingPerCharacter) / extent.tallest;
    const double scale = std::max(0.0, std::min({1.0, alongScale, crossScale}));

    std::vector<double> heights;
    heights.reserve(characters.size());
    for (const Metrics& character : characters) {
        heights.push_back(character.height * scale);
    }
    return heights;
}

std::vector<Rect> frames(std::span<const Size> sizes, Edge edge, const Rect& visible) {
    std::vector<Rect> placed(sizes.size());
    Point corner{visible.maxX() - margin, visible.minY() + margin};
    for (std::size_t index = sizes.size(); index-- > 0;) {
        const Size size = sizes[index];
        placed[index] = {corner.x - size.width, corner.y, size.width, size.height};
        if (edge == Edge::bottom) {
            corner.x -= size.width + margin;
        } else {
            corner.y += size.height + margin;
        }
    }
    return placed;
}

double progress(Seconds elapsed, Seconds duration) {
    const double part = elapsed / duration;
    if (!(duration > 0) || std::isnan(part)) {
        return 1; // an animation whose clock is broken must end, not hang
    }
    return 1 - std::pow(1 - std::clamp(part, 0.0, 1.0), 4);
}

} // namespace FellowCore::ArrangeLayout
