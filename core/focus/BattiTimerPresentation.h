#pragma once

#include "core/base/Instant.h"
#include "core/focus/BattiPauseReason.h"
#include "core/focus/TimerPhase.h"
#include "core/focus/TimerStatus.h"

#include <optional>
#include <string>

namespace FellowCore {

/// What Batti's lamp shows and what its buttons and its status line say. Pack characters with a timer use the
/// same words.
struct BattiTimerPresentation {
    enum class Light { red, amber, green };

    Light light = Light::amber;
    bool pulses = false;      ///< whether the lamp breathes
    std::string statusTitle;  ///< "Focus", "Short rest paused", "Paused while asleep", ...
    std::string primaryTitle; ///< the word on the main button: "Start focus", "Pause", "Resume", "Start rest"

    /// `pauseReason` matters only while paused.
    BattiTimerPresentation(TimerPhase phase, TimerStatus status, std::optional<BattiPauseReason> pauseReason);

    friend bool operator==(const BattiTimerPresentation&, const BattiTimerPresentation&) = default;
};

/// The remaining time as minutes and seconds of at least two digits each: "25:00", "05:09", "120:00". A begun
/// second counts whole, so a countdown shows its full length at first and "00:00" only when it is over. Not
/// finite and negative count as 0.
std::string timerBadge(Seconds remaining);

/// The spoken form: "Ready for focus, 25:00 remaining".
std::string spokenTimerText(const BattiTimerPresentation& presentation, Seconds remaining);

} // namespace FellowCore
