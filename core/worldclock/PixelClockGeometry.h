#pragma once

#include "core/base/Calendar.h"

namespace FellowCore {

/// A pixel of a clock's face, y downward.
struct PixelClockPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelClockPoint&, const PixelClockPoint&) = default;
};

/// Where the two hands end.
struct PixelClockHands {
    PixelClockPoint hour;
    PixelClockPoint minute;

    friend bool operator==(const PixelClockHands&, const PixelClockHands&) = default;
};

/// The hands of an analogue face. A hand of length L at the fraction f of a turn ends at
/// (x + round(sin 2πf · L), y − round(cos 2πf · L)), halves rounded away from zero, 12 o'clock being up.
struct PixelClockGeometry {
    static constexpr int longestHand = 10'000; ///< pixels; lengths are held to 0...longestHand

    /// The hour hand moves on with the minutes.
    static PixelClockHands hands(int hour, int minute, PixelClockPoint center, int hourLength,
                                 int minuteLength);
    /// At the hour and minute of a zone; seconds play no part. Midnight for an instant that is not finite.
    static PixelClockHands hands(Instant at, const Calendar& timeZone, PixelClockPoint center, int hourLength,
                                 int minuteLength);
};

} // namespace FellowCore
