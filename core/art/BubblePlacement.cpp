#include "core/art/BubblePlacement.h"

#include "core/art/DesktopLayout.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

namespace FellowCore {

namespace {

// Sums of fractions may miss an edge by the last bit; a millionth of a point is no overlap.
constexpr double slack = 1e-6;

// How near the pointer's tip may come to the bubble's corners.
constexpr double pointerMargin = 8;

std::vector<Rect> usable(std::span<const Rect> obstacles) {
    std::vector<Rect> found;
    std::copy_if(obstacles.begin(), obstacles.end(), std::back_inserter(found),
                 [](const Rect& obstacle) { return obstacle.isFinite() && !obstacle.isEmpty(); });
    return found;
}

Rect areaOf(const Rect& visible) {
    return visible.inset(BubblePlacement::screenMargin, BubblePlacement::screenMargin);
}

bool isClear(const Rect& frame, const Rect& area, std::span<const Rect> obstacles) {
    return frame.isFinite() && area.inset(-slack, -slack).contains(frame) &&
           std::none_of(obstacles.begin(), obstacles.end(),
                        [&](const Rect& obstacle) { return obstacle.inset(slack, slack).intersects(frame); });
}

// The side on which the bubble goes is the artwork's left unless only the right has room, or neither has and
// the right has more.
bool goesLeft(const Rect& artwork, const Rect& visible, double width, double gap) {
    const double left = artwork.minX() - visible.minX() - BubblePlacement::screenMargin - gap;
    const double right = visible.maxX() - BubblePlacement::screenMargin - artwork.maxX() - gap;
    return width <= left || (width > right && left >= right);
}

Rect roundedOrigin(const Rect& frame) {
    return frame.at({roundedHalfAway(frame.x), roundedHalfAway(frame.y)});
}

} // namespace

BubblePlacement BubblePlacement::resolve(const Rect& artwork, double faceY, const Rect& visible, Size size,
                                         double pointerOffset, std::optional<double> reserveWidth, double gap,
                                         std::span<const Rect> avoiding) {
    const double face = std::isfinite(faceY) ? faceY : artwork.midY();
    const bool left = goesLeft(artwork, visible, std::max(size.width, reserveWidth.value_or(0)), gap);
    const double x = left ? artwork.minX() - size.width - gap : artwork.maxX() + gap;
    const Rect area = areaOf(visible);
    const Rect wanted =
        roundedOrigin(DesktopLayout::clamped({x, face - pointerOffset, size.width, size.height}, area));

    std::vector<Rect> obstacles = usable(avoiding);
    if (obstacles.empty()) {
        return {wanted, !left, roundedHalfAway(face - wanted.minY()), wanted.isFinite()};
    }
    obstacles.push_back(artwork);
    obstacles = usable(obstacles);
    const Rect frame = clearFrame(wanted, visible, obstacles, gap);
    const double pointer = roundedHalfAway(face - frame.minY());
    return {frame, artwork.midX() <= frame.midX(),
            std::max(pointerMargin, std::min(pointer, frame.height - pointerMargin)),
            isClear(frame, area, obstacles)};
}

Rect BubblePlacement::clearFrame(const Rect& wanted, const Rect& visible, std::span<const Rect> avoiding,
                                 double gap) {
    const Rect area = areaOf(visible);
    const std::vector<Rect> obstacles = usable(avoiding);
    std::vector<double> xs{wanted.x, area.minX(), area.maxX() - wanted.width};
    std::vector<double> ys{wanted.y, area.minY(), area.maxY() - wanted.height};
    for (const Rect& obstacle : obstacles) {
        xs.insert(xs.end(), {obstacle.minX() - wanted.width - gap, obstacle.maxX() + gap});
        ys.insert(ys.end(), {obstacle.minY() - wanted.height - gap, obstacle.maxY() + gap});
    }

    Rect nearest = wanted;
    double smallest = std::numeric_limits<double>::infinity();
    for (const double x : xs) {
        for (const double y : ys) {
            const double distance = (x - wanted.x) * (x - wanted.x) + (y - wanted.y) * (y - wanted.y);
            // Strictly nearer, so that the first found keeps a tie; and compared first, as it is the cheaper
            // test.
            if (distance < smallest && isClear(wanted.at({x, y}), area, obstacles)) {
                smallest = distance;
                nearest = wanted.at({x, y});
            }
        }
    }
    return nearest;
}

} // namespace FellowCore
