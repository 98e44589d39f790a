#pragma once

#include "core/base/Instant.h"

#include <cmath>

namespace FellowCore {

/// When the clocks have to be drawn again.
struct WorldClockTiming {
    /// The next whole minute of the Unix clock, a full minute away from a whole one.
    static Instant nextMinute(Instant after) {
        constexpr Seconds minute = 60;
        return Instant::fromUnix((std::floor(after.toUnix() / minute) + 1) * minute);
    }
};

} // namespace FellowCore
