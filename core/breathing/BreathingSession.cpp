#include "core/breathing/BreathingSession.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

BreathingSession::BreathingSession(const BreathingSettings& chosen, Seconds settling)
    : settings(chosen.normalized()),
      settlingDuration(BreathingSettings::limits(BreathingPhase::settle).clamped(settling)) {}

void BreathingSession::start(Instant at) {
    if (status == BreathingStatus::idle || status == BreathingStatus::paused) {
        status = BreathingStatus::running;
        startedAt = at;
    }
}

void BreathingSession::pause(Instant at) {
    if (status != BreathingStatus::running) {
        return;
    }
    accumulatedSeconds = elapsed(at);
    startedAt.reset();
    status = accumulatedSeconds >= totalDuration() ? BreathingStatus::completed : BreathingStatus::paused;
}

bool BreathingSession::tick(Instant at) {
    if (status != BreathingStatus::running || elapsed(at) < totalDuration()) {
        return false;
    }
    pause(at);
    return true;
}

void BreathingSession::reset() {
    status = BreathingStatus::idle;
    startedAt.reset();
    accumulatedSeconds = 0;
}

void BreathingSession::normalizeForRestore() {
    settings = settings.normalized();
    accumulatedSeconds = std::isfinite(accumulatedSeconds) ? timeline().clamped(accumulatedSeconds) : 0;
    startedAt.reset();
    if (status == BreathingStatus::running) {
        status = BreathingStatus::paused;
    }
    if (status == BreathingStatus::completed || accumulatedSeconds >= totalDuration()) {
        status = BreathingStatus::completed;
        accumulatedSeconds = totalDuration();
    } else if (status == BreathingStatus::idle) {
        accumulatedSeconds = 0;
    }
}

BreathingTimeline BreathingSession::timeline() const {
    return {settings, settlingDuration};
}

Seconds BreathingSession::totalDuration() const {
    return timeline().totalDuration();
}

Seconds BreathingSession::elapsed(Instant at) const {
    Seconds live = 0;
    if (status == BreathingStatus::running && startedAt) {
        const Seconds since = at - *startedAt;
        live = std::isfinite(since) ? std::max(0.0, since) : 0;
    }
    return timeline().clamped(accumulatedSeconds + live);
}

int BreathingSession::round(Instant at) const {
    return timeline().round(elapsed(at));
}

BreathingPhase BreathingSession::phase(Instant at) const {
    return timeline().phase(elapsed(at));
}

Seconds BreathingSession::phaseDuration(Instant at) const {
    return timeline().phaseDuration(elapsed(at));
}

Seconds BreathingSession::phaseElapsed(Instant at) const {
    return timeline().phaseElapsed(elapsed(at));
}

double BreathingSession::phaseProgress(Instant at) const {
    return timeline().phaseProgress(elapsed(at));
}

double BreathingSession::expansion(Instant at) const {
    return timeline().expansion(elapsed(at));
}

BreathingSession BreathingSession::pausedSnapshot(Instant at) const {
    BreathingSession copy = *this;
    copy.pause(at);
    return copy;
}

} // namespace FellowCore
