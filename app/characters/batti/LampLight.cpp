#include "app/characters/batti/LampLight.h"

#include "core/focus/CharacterMotion.h"

#include <array>
#include <cmath>

namespace DeskSprites {

namespace Motion = FellowCore::CharacterMotion;
using FellowCore::MonotonicInstant;
using FellowCore::Seconds;

namespace {

/// A paused lamp sinks and rises once in this time and is steady for the rest of it, so that it asks for no
/// attention and costs next to nothing.
constexpr Seconds pulsePeriod = 4.0;
constexpr Seconds pulseStep = 0.12;
constexpr std::array pulseLevels{0.8, 0.62, 0.5, 0.62, 0.8};
constexpr Seconds pulseLength = pulseStep * pulseLevels.size();
constexpr Seconds tick = 1e-3; ///< past a boundary, so that the next look is surely behind it

double pulse(Seconds elapsed) {
    const Seconds within = std::fmod(elapsed, pulsePeriod) - (pulsePeriod - pulseLength);
    const int step = static_cast<int>(std::floor(within / pulseStep));
    return step < 0 ? Motion::litBrightness
                    : pulseLevels.at(static_cast<std::size_t>(step) % pulseLevels.size());
}

Seconds untilPulseChange(Seconds elapsed) {
    const Seconds within = std::fmod(elapsed, pulsePeriod) - (pulsePeriod - pulseLength);
    return (within < 0 ? -within : pulseStep - std::fmod(within, pulseStep)) + tick;
}

Seconds untilFlashStep(Seconds elapsed) {
    return Motion::flashStep - std::fmod(elapsed, Motion::flashStep) + tick;
}

bool isWithin(const std::optional<MonotonicInstant>& start, Seconds length, MonotonicInstant at) {
    return start && at - *start >= 0 && at - *start < length;
}

} // namespace

void LampLight::setPulses(bool pulses, MonotonicInstant at) {
    if (pulses != pulseStart_.has_value()) {
        pulseStart_ = pulses ? std::optional(at) : std::nullopt;
    }
}

void LampLight::flashPhase(MonotonicInstant at) {
    transitionStart_ = at;
}

void LampLight::flashCompletion(MonotonicInstant at) {
    completionStart_ = at;
}

void LampLight::clearFlashes() {
    transitionStart_.reset();
    completionStart_.reset();
}

double LampLight::brightness(MonotonicInstant at) const {
    if (isWithin(completionStart_, Motion::completionLightDuration, at)) {
        return Motion::completionLight(at - *completionStart_, reduced_);
    }
    if (isWithin(transitionStart_, Motion::phaseLightDuration, at)) {
        return Motion::phaseLight(at - *transitionStart_, reduced_);
    }
    return pulseStart_ && !reduced_ ? pulse(at - *pulseStart_) : Motion::litBrightness;
}

std::optional<Seconds> LampLight::untilNextChange(MonotonicInstant at) const {
    if (reduced_) {
        return std::nullopt;
    }
    if (isWithin(completionStart_, Motion::completionLightDuration, at)) {
        return untilFlashStep(at - *completionStart_);
    }
    if (isWithin(transitionStart_, Motion::phaseLightDuration, at)) {
        return untilFlashStep(at - *transitionStart_);
    }
    return pulseStart_ ? std::optional(untilPulseChange(at - *pulseStart_)) : std::nullopt;
}

} // namespace DeskSprites
