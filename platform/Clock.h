#pragma once

#include "core/base/Instant.h"

namespace Platform {

/// Tells the time. The only reader of the system's clocks; whoever needs the time is handed one of these, so
/// that a test can hand over its own.
class Clock {
public:
    virtual ~Clock() = default;

    virtual FellowCore::Instant wall() const = 0;
    /// Does not advance while the machine sleeps.
    virtual FellowCore::MonotonicInstant monotonic() const = 0;
};

/// The system's clocks.
class SystemClock final : public Clock {
public:
    FellowCore::Instant wall() const override;
    FellowCore::MonotonicInstant monotonic() const override;
};

} // namespace Platform
