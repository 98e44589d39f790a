#pragma once

#include "core/base/Instant.h"
#include "core/breathing/BreathingPhase.h"
#include "core/breathing/BreathingSettings.h"
#include "core/breathing/BreathingStatus.h"
#include "core/breathing/BreathingTimeline.h"

#include <optional>

namespace FellowCore {

/// One guided breathing session: its rhythm, whether it runs, and how much of it has been played.
///
/// It is told the time at every call and counts no frames, so it cannot drift. The queries are closed-form
/// and allocate nothing. An instant before the current stretch began, or one that is not finite, adds no
/// time.
struct BreathingSession {
    static constexpr Seconds usualSettling = 3;

    BreathingSettings settings;
    BreathingStatus status = BreathingStatus::idle;
    std::optional<Instant> startedAt; ///< when the current stretch began; only while running
    Seconds accumulatedSeconds = 0;   ///< played before the current stretch
    Seconds settlingDuration;         ///< 0...3, before the first round

    /// An idle session: calm, six rounds, three seconds to settle, unless told otherwise. Both are
    /// normalised.
    explicit BreathingSession(const BreathingSettings& settings = FellowCore::settings(BreathingMode::calm),
                              Seconds settlingDuration = usualSettling);

    /// Begins an idle session or continues a paused one where it stood. A completed one needs `reset` first.
    void start(Instant at);
    /// Only while running. A session that has reached its end completes instead.
    void pause(Instant at);
    /// True exactly when this call completed a running session.
    bool tick(Instant at);
    /// Idle at the beginning again, with the same settings.
    void reset();
    /// Repairs a session that came from a file. It never runs afterwards: the time while it was away does not
    /// count.
    void normalizeForRestore();

    /// The session's line of seconds, for asking about seconds instead of instants.
    BreathingTimeline timeline() const;
    Seconds totalDuration() const;
    /// How much has been played, 0...`totalDuration()`.
    Seconds elapsed(Instant at) const;
    /// What `BreathingTimeline` says of the seconds elapsed.
    int round(Instant at) const;
    BreathingPhase phase(Instant at) const;
    Seconds phaseDuration(Instant at) const;
    Seconds phaseElapsed(Instant at) const;
    double phaseProgress(Instant at) const;
    double expansion(Instant at) const;
    /// A copy paused at that instant.
    BreathingSession pausedSnapshot(Instant at) const;

    friend bool operator==(const BreathingSession&, const BreathingSession&) = default;
};

} // namespace FellowCore
