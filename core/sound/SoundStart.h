#pragma once

#include "core/base/Instant.h"

namespace FellowCore {

/// Where in a sound one begins, and how fast it goes from there.
struct SoundStart {
    static constexpr double slowest = 0.25;
    static constexpr double fastest = 4;

    /// From the sound's beginning, in its own seconds. Below 0 or not finite is the beginning; at the end or
    /// beyond it there is nothing to hear.
    Seconds offset = 0;
    double rate = 1; ///< seconds of the sound in a second, `slowest`...`fastest`; not finite is 1
};

} // namespace FellowCore
