#pragma once

#include "core/base/Instant.h"
#include "core/breathing/BreathingPhase.h"
#include "core/breathing/BreathingSettings.h"

namespace FellowCore {

/// A session as one straight line of seconds: the settling, then `settings.rounds` equal rounds. It answers
/// where a given second lies, in closed form and without allocating, as every animation frame asks.
///
/// A second before the beginning, and one that is no number, counts as the beginning; one after the end as
/// the end.
struct BreathingTimeline {
    BreathingSettings settings;
    Seconds settlingDuration = 0; ///< 0...3

    Seconds totalDuration() const;
    /// 0...`totalDuration()`.
    Seconds clamped(Seconds elapsed) const;
    /// From 1; the settling belongs to the first round.
    int round(Seconds elapsed) const;
    /// Never one of no length. At the end it is `exhale`, also for a rhythm that ends on `rest`.
    BreathingPhase phase(Seconds elapsed) const;
    /// The whole length of the phase at that second.
    Seconds phaseDuration(Seconds elapsed) const;
    /// How long that phase has lasted.
    Seconds phaseElapsed(Seconds elapsed) const;
    /// How much of that phase is over, 0...1.
    double phaseProgress(Seconds elapsed) const;
    /// How full the lungs are: 0 empty, 1 full. Each draw and each breath out follows half a cosine wave, so
    /// it begins and ends gently; with a `sip` the first draw fills 0.72.
    double expansion(Seconds elapsed) const;

private:
    Seconds intoRounds(Seconds elapsed) const;
    Seconds intoRound(Seconds elapsed) const;
    bool isOver(Seconds elapsed) const;
};

} // namespace FellowCore
