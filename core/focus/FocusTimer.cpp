#include "core/focus/FocusTimer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace FellowCore {

namespace {

constexpr Seconds shortestPhase = 1;
constexpr Seconds longestPhase = 7200;

} // namespace

FocusTimer::FocusTimer(const TimerSettings& chosen) : settings(chosen.sanitized()) {
    enter(TimerPhase::focus);
}

bool FocusTimer::tick(Instant at) {
    if (status != TimerStatus::running) {
        return false;
    }
    if (!deadline) {
        status = TimerStatus::paused;
        return false;
    }
    remainingSeconds = secondsToDeadline(at);
    if (remainingSeconds > 0) {
        return false;
    }
    complete();
    return true;
}

void FocusTimer::start(Instant at) {
    switch (status) {
    case TimerStatus::idle:
        runFrom(at);
        break;
    case TimerStatus::running:
        break;
    case TimerStatus::paused:
        resume(at);
        break;
    case TimerStatus::completed:
        startNext(at);
        break;
    }
}

void FocusTimer::pause(Instant at) {
    if (status != TimerStatus::running || tick(at)) {
        return;
    }
    remainingSeconds = timeRemaining(at);
    deadline.reset();
    status = TimerStatus::paused;
}

void FocusTimer::resume(Instant at) {
    if (status != TimerStatus::paused) {
        return;
    }
    if (remainingSeconds > 0) {
        runFrom(at);
    } else {
        complete();
    }
}

void FocusTimer::startNext(Instant at) {
    if (const auto next = pendingPhase()) {
        enter(*next);
        runFrom(at);
    }
}

void FocusTimer::complete() {
    if (status == TimerStatus::completed) {
        return;
    }
    status = TimerStatus::completed;
    deadline.reset();
    remainingSeconds = 0;
    if (phase == TimerPhase::focus && completedFocusSessions < std::numeric_limits<std::int64_t>::max()) {
        ++completedFocusSessions;
    }
}

void FocusTimer::reset() {
    enter(TimerPhase::focus);
    status = TimerStatus::idle;
    deadline.reset();
}

void FocusTimer::updateSettings(const TimerSettings& changed) {
    settings = changed.sanitized();
    if (status == TimerStatus::idle) {
        enter(phase);
    }
}

void FocusTimer::normalize(Instant at) {
    repairNumbers();
    switch (status) {
    case TimerStatus::idle:
        reset();
        break;
    case TimerStatus::running:
        if (deadline && !deadline->isFinite()) {
            deadline.reset();
        }
        // The clock was set back, or the file is wrong: the remaining time is the better witness.
        if (deadline && *deadline - at > phaseDuration) {
            deadline = at + remainingSeconds;
        }
        tick(at);
        break;
    case TimerStatus::paused:
        deadline.reset();
        break;
    case TimerStatus::completed:
        deadline.reset();
        remainingSeconds = 0;
        break;
    }
}

Seconds FocusTimer::timeRemaining(Instant at) const {
    return status == TimerStatus::running && deadline ? secondsToDeadline(at)
                                                      : std::max(0.0, remainingSeconds);
}

double FocusTimer::progress(Instant at) const {
    return phaseDuration > 0 ? std::clamp(1 - timeRemaining(at) / phaseDuration, 0.0, 1.0) : 0;
}

std::optional<TimerPhase> FocusTimer::pendingPhase() const {
    if (status != TimerStatus::completed) {
        return std::nullopt;
    }
    if (phase != TimerPhase::focus) {
        return TimerPhase::focus;
    }
    const bool earned = completedFocusSessions % settings.sanitized().longBreakEvery == 0;
    return earned ? TimerPhase::longBreak : TimerPhase::shortBreak;
}

bool FocusTimer::performPrimaryAction(Instant at) {
    const bool wasCompleted = status == TimerStatus::completed;
    if (status == TimerStatus::running) {
        pause(at);
    } else {
        start(at);
    }
    return !wasCompleted && status == TimerStatus::completed;
}

bool FocusTimer::tickForBatti(Instant at) {
    const bool ended = tick(at);
    if (ended) {
        startBattiRestIfEnabled(at);
    }
    return ended;
}

bool FocusTimer::performBattiPrimaryAction(Instant at) {
    const bool ended = performPrimaryAction(at);
    if (ended) {
        startBattiRestIfEnabled(at);
    }
    return ended;
}

void FocusTimer::startBattiRestIfEnabled(Instant at) {
    if (phase == TimerPhase::focus && settings.startRestsAutomatically) {
        startNext(at);
    }
}

BattiTimerPresentation FocusTimer::battiPresentation() const {
    return BattiTimerPresentation(phase, status, std::nullopt);
}

// A time that is not a number must not end a phase: the last value known holds.
Seconds FocusTimer::secondsToDeadline(Instant at) const {
    const Seconds left = *deadline - at;
    return std::isfinite(left) ? std::max(0.0, std::min(left, phaseDuration))
                               : std::max(0.0, remainingSeconds);
}

void FocusTimer::repairNumbers() {
    settings = settings.sanitized();
    completedFocusSessions = std::max<std::int64_t>(completedFocusSessions, 0);
    if (!(phaseDuration >= shortestPhase && phaseDuration <= longestPhase)) {
        phaseDuration = settings.duration(phase);
    }
    if (!std::isfinite(remainingSeconds)) {
        remainingSeconds = phaseDuration;
    }
    remainingSeconds = std::clamp(remainingSeconds, 0.0, phaseDuration);
}

void FocusTimer::enter(TimerPhase next) {
    phase = next;
    phaseDuration = settings.duration(next);
    remainingSeconds = phaseDuration;
}

void FocusTimer::runFrom(Instant at) {
    status = TimerStatus::running;
    deadline = at + remainingSeconds;
}

} // namespace FellowCore
