#pragma once

#include <cmath>
#include <compare>

namespace FellowCore {

/// A length of time in seconds.
using Seconds = double;

/// A point of wall time, kept as seconds since 2001-01-01 00:00:00 UTC (leap seconds not counted), which is
/// also the form in which JSON files carry dates. May be non-finite when it came from outside; ask
/// `isFinite`.
struct Instant {
    static constexpr Seconds unixEpochOffset = 978307200.0; ///< 1970-01-01 to 2001-01-01

    Seconds sinceReference = 0;

    static constexpr Instant fromUnix(Seconds seconds) { return {seconds - unixEpochOffset}; }
    constexpr Seconds toUnix() const { return sinceReference + unixEpochOffset; }
    bool isFinite() const { return std::isfinite(sinceReference); }

    friend constexpr auto operator<=>(const Instant&, const Instant&) = default;
    friend constexpr Instant operator+(Instant at, Seconds length) { return {at.sinceReference + length}; }
    friend constexpr Instant operator-(Instant at, Seconds length) { return {at.sinceReference - length}; }
    friend constexpr Seconds operator-(Instant later, Instant earlier) {
        return later.sinceReference - earlier.sinceReference;
    }
};

/// A point on a clock that never steps back, in seconds since an arbitrary origin. For spacing and animation
/// only; it says nothing about the calendar and never reaches a file.
struct MonotonicInstant {
    Seconds sinceOrigin = 0;

    friend constexpr auto operator<=>(const MonotonicInstant&, const MonotonicInstant&) = default;
    friend constexpr MonotonicInstant operator+(MonotonicInstant at, Seconds length) {
        return {at.sinceOrigin + length};
    }
    friend constexpr Seconds operator-(MonotonicInstant later, MonotonicInstant earlier) {
        return later.sinceOrigin - earlier.sinceOrigin;
    }
};

} // namespace FellowCore
