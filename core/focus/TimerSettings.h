#pragma once

#include "core/base/Instant.h"
#include "core/focus/TimerPhase.h"

namespace FellowCore {

/// How long the phases last and how they follow one another. The constructor clamps; fields that were changed
/// afterwards are clamped again by `sanitized` and wherever they are used.
struct TimerSettings {
    int focusMinutes;             ///< 1...120
    int shortBreakMinutes;        ///< 1...60
    int longBreakMinutes;         ///< 1...120
    int longBreakEvery;           ///< 1...12: the long rest follows every so many focus phases
    bool startRestsAutomatically; ///< whether a rest begins by itself when focus ends

    explicit TimerSettings(int focusMinutes = 25, int shortBreakMinutes = 5, int longBreakMinutes = 15,
                           int longBreakEvery = 4, bool startRestsAutomatically = true);

    TimerSettings sanitized() const;
    Seconds duration(TimerPhase phase) const;

    friend bool operator==(const TimerSettings&, const TimerSettings&) = default;
};

} // namespace FellowCore
