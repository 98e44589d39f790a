#include "core/focus/BattiTimerPresentation.h"

#include <cmath>
#include <cstdint>

namespace FellowCore {

namespace {

// Deadlines are doubles near a thousand million; what their differences miss is noise, not a begun second.
constexpr Seconds noise = 0.001;

// Far beyond any phase, and far below what the conversion to a whole number can take.
constexpr Seconds longestShown = 359'999;

std::string twoDigits(std::int64_t value) {
    const std::string digits = std::to_string(value);
    return digits.size() < 2 ? "0" + digits : digits;
}

} // namespace

BattiTimerPresentation::BattiTimerPresentation(TimerPhase phase, TimerStatus status,
                                               std::optional<BattiPauseReason> pauseReason) {
    const bool focus = phase == TimerPhase::focus;
    const std::string word(title(phase));
    switch (status) {
    case TimerStatus::idle:
        statusTitle = "Ready for focus";
        primaryTitle = "Start focus";
        light = Light::amber;
        break;
    case TimerStatus::running:
        statusTitle = word;
        primaryTitle = "Pause";
        light = focus ? Light::red : Light::green;
        break;
    case TimerStatus::paused:
        statusTitle = pauseReason ? std::string(title(*pauseReason)) : word + " paused";
        primaryTitle = "Resume";
        light = Light::amber;
        pulses = true;
        break;
    case TimerStatus::completed:
        statusTitle = word + " complete";
        primaryTitle = focus ? "Start rest" : "Start focus";
        light = focus ? Light::green : Light::amber;
        break;
    }
}

std::string timerBadge(Seconds remaining) {
    if (!(remaining > 0) || std::isinf(remaining)) {
        return "00:00";
    }
    const auto seconds = static_cast<std::int64_t>(std::ceil(std::fmin(remaining, longestShown) - noise));
    return twoDigits(seconds / 60) + ":" + twoDigits(seconds % 60);
}

std::string spokenTimerText(const BattiTimerPresentation& presentation, Seconds remaining) {
    return presentation.statusTitle + ", " + timerBadge(remaining) + " remaining";
}

} // namespace FellowCore
