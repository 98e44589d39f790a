#pragma once

#include "platform/Clock.h"

namespace DeskSprites {

/// The time by which a session is counted: the wall's when the clock was made, and from there on by a clock
/// that nobody sets. So a long session neither drifts nor jumps when the wall's time is corrected.
class SessionClock {
public:
    explicit SessionClock(const Platform::Clock& clock)
        : clock_(clock), wall_(clock.wall()), begin_(clock.monotonic()) {}

    FellowCore::Instant now() const { return wall_ + (clock_.monotonic() - begin_); }

private:
    const Platform::Clock& clock_;
    FellowCore::Instant wall_;
    FellowCore::MonotonicInstant begin_;
};

} // namespace DeskSprites
