#pragma once

#include "core/base/Instant.h"
#include "core/focus/BattiTimerPresentation.h"
#include "core/focus/TimerPhase.h"
#include "core/focus/TimerSettings.h"
#include "core/focus/TimerStatus.h"

#include <cstdint>
#include <optional>

namespace FellowCore {

/// One focus-and-rest cycle: which phase runs, how much of it is left, how many focus phases were finished.
///
/// It is told the wall time at every call. The deadline, and not the number of ticks, decides when a phase
/// ends, so a late tick or a machine that slept still ends it at the right moment. `deadline` exists only
/// while running.
struct FocusTimer {
    TimerSettings settings;
    TimerPhase phase = TimerPhase::focus; ///< the phase that runs, or that just ended
    TimerStatus status = TimerStatus::idle;
    Seconds remainingSeconds = 0; ///< when running, as of the last tick; ask `timeRemaining` instead
    std::int64_t completedFocusSessions = 0; ///< focus phases finished in this cycle
    std::optional<Instant> deadline;
    Seconds phaseDuration = 0; ///< full length of the current phase

    /// An idle focus phase.
    explicit FocusTimer(const TimerSettings& settings = TimerSettings());

    /// Brings the remaining time up to date; true when this call ended the phase. A running timer without a
    /// deadline becomes paused.
    bool tick(Instant at);
    /// Starts an idle timer, resumes a paused one, moves a completed one into its next phase.
    void start(Instant at);
    /// Only while running. A phase whose deadline has passed completes instead.
    void pause(Instant at);
    /// Only while paused. A phase with nothing left completes instead.
    void resume(Instant at);
    /// Only when completed: runs `pendingPhase`.
    void startNext(Instant at);
    /// Ends the phase and counts it when it was focus; nothing happens when it has ended already.
    void complete();
    /// An idle focus phase again. The count towards the long rest stays.
    void reset();
    /// Adopts the sanitized settings. Only an idle timer takes the new length at once; a running or paused
    /// phase keeps the length it began with.
    void updateSettings(const TimerSettings& changed);
    /// Repairs a timer that came from a file, and lets time that went by meanwhile count.
    void normalize(Instant at);

    Seconds timeRemaining(Instant at) const;
    /// How much of the phase is over, 0...1.
    double progress(Instant at) const;
    /// What follows a completed phase; nothing in any other status.
    std::optional<TimerPhase> pendingPhase() const;

    /// The main button of a character with a plain timer: start, pause, resume, or run the next phase. True
    /// when it ended the phase, as happens when the deadline has passed in the very moment of the press.
    bool performPrimaryAction(Instant at);

    /// Batti's own rules: the rest after a focus phase begins by itself when the settings say so; focus never
    /// does. Both return whether the call ended a phase.
    bool tickForBatti(Instant at);
    bool performBattiPrimaryAction(Instant at);
    void startBattiRestIfEnabled(Instant at);

    /// The presentation with no pause reason.
    BattiTimerPresentation battiPresentation() const;

    friend bool operator==(const FocusTimer&, const FocusTimer&) = default;

private:
    Seconds secondsToDeadline(Instant at) const;
    void repairNumbers();
    void enter(TimerPhase next);
    void runFrom(Instant at);
};

} // namespace FellowCore
