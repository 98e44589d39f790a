#include "core/worldclock/PixelClockGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace FellowCore {

namespace {

int shifted(int center, double by) {
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(center + std::round(by), least, most));
}

PixelClockPoint endOfHand(PixelClockPoint center, int length, double fraction) {
    const double angle = 2 * std::numbers::pi * fraction;
    const int held = std::clamp(length, 0, PixelClockGeometry::longestHand);
    return {shifted(center.x, std::sin(angle) * held), shifted(center.y, -std::cos(angle) * held)};
}

} // namespace

PixelClockHands PixelClockGeometry::hands(int hour, int minute, PixelClockPoint center, int hourLength,
                                          int minuteLength) {
    const double ofHour = minute / 60.0;
    return {endOfHand(center, hourLength, (hour + ofHour) / 12), endOfHand(center, minuteLength, ofHour)};
}

PixelClockHands PixelClockGeometry::hands(Instant at, const Calendar& timeZone, PixelClockPoint center,
                                          int hourLength, int minuteLength) {
    constexpr Seconds secondsPerDay = 86400;
    const Seconds local = at.toUnix() + timeZone.utcOffset(at);
    const Seconds ofDay = at.isFinite() ? local - std::floor(local / secondsPerDay) * secondsPerDay : 0;
    const int minutes = static_cast<int>(ofDay / 60);
    return hands(minutes / 60, minutes % 60, center, hourLength, minuteLength);
}

} // namespace FellowCore
