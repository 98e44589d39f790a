#include "core/breathing/BreathingTimeline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace FellowCore {

namespace {

constexpr double fullnessBeforeSip = 0.72;

} // namespace

Seconds BreathingTimeline::totalDuration() const {
    return settlingDuration + settings.rounds * settings.cycle();
}

Seconds BreathingTimeline::clamped(Seconds elapsed) const {
    // In this order of arguments what is no number gives 0.
    return std::min(totalDuration(), std::max(0.0, elapsed));
}

int BreathingTimeline::round(Seconds elapsed) const {
    const double begun = std::floor(intoRounds(elapsed) / settings.cycle()) + 1;
    return static_cast<int>(std::min<double>(settings.rounds, begun));
}

BreathingPhase BreathingTimeline::phase(Seconds elapsed) const {
    if (settlingDuration > clamped(elapsed)) {
        return BreathingPhase::settle;
    }
    if (isOver(elapsed)) {
        return BreathingPhase::exhale;
    }
    const Seconds at = intoRound(elapsed);
    if (at < settings.offset(BreathingPhase::sip)) {
        return BreathingPhase::inhale;
    }
    if (at < settings.offset(BreathingPhase::hold)) {
        return BreathingPhase::sip;
    }
    if (at < settings.offset(BreathingPhase::exhale)) {
        return BreathingPhase::hold;
    }
    return at < settings.offset(BreathingPhase::rest) ? BreathingPhase::exhale : BreathingPhase::rest;
}

Seconds BreathingTimeline::phaseDuration(Seconds elapsed) const {
    const BreathingPhase current = phase(elapsed);
    return current == BreathingPhase::settle ? settlingDuration : settings.duration(current);
}

Seconds BreathingTimeline::phaseElapsed(Seconds elapsed) const {
    const BreathingPhase current = phase(elapsed);
    if (current == BreathingPhase::settle) {
        return clamped(elapsed);
    }
    return isOver(elapsed) ? settings.duration(current) : intoRound(elapsed) - settings.offset(current);
}

double BreathingTimeline::phaseProgress(Seconds elapsed) const {
    if (isOver(elapsed)) {
        return 1;
    }
    return std::clamp(phaseElapsed(elapsed) / phaseDuration(elapsed), 0.0, 1.0);
}

double BreathingTimeline::expansion(Seconds elapsed) const {
    const double eased = (1 - std::cos(phaseProgress(elapsed) * std::numbers::pi)) / 2;
    switch (phase(elapsed)) {
    case BreathingPhase::inhale:
        return settings.sip > 0 ? eased * fullnessBeforeSip : eased;
    case BreathingPhase::sip:
        return fullnessBeforeSip + eased * (1 - fullnessBeforeSip);
    case BreathingPhase::hold:
        return 1;
    case BreathingPhase::exhale:
        return 1 - eased;
    case BreathingPhase::settle:
    case BreathingPhase::rest:
        break;
    }
    return 0;
}

Seconds BreathingTimeline::intoRounds(Seconds elapsed) const {
    return std::max(0.0, clamped(elapsed) - settlingDuration);
}

Seconds BreathingTimeline::intoRound(Seconds elapsed) const {
    return std::fmod(intoRounds(elapsed), settings.cycle());
}

bool BreathingTimeline::isOver(Seconds elapsed) const {
    return elapsed >= totalDuration();
}

} // namespace FellowCore
