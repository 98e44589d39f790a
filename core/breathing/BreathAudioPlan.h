#pragma once

#include "core/base/Instant.h"

#include <optional>

namespace FellowCore {

/// What is known when a phase begins, or when a session goes on in the middle of one. Lengths that are
/// negative or not finite count as 0.
struct BreathAudioContext {
    Seconds duration = 0;       ///< of the phase
    Seconds elapsed = 0;        ///< how much of it is over
    Seconds voiceDuration = 0;  ///< of the spoken cue
    Seconds breathDuration = 0; ///< of the breath sound, at its own speed
    bool voice = false;         ///< whether the cue is wanted
    bool breath = false;        ///< whether the breath sound is wanted
};

/// How the spoken cue and the breath sound of one phase are played, so that both fit into it: first the
/// voice, then a short gap, then the breath, stretched to what is left. Made afresh for each phase.
struct BreathAudioPlan {
    std::optional<Seconds> voiceOffset; ///< 0 when the voice speaks now; never anything else
    std::optional<Seconds> breathDelay; ///< how long from now the breath sound begins; absent for none
    Seconds breathOffset = 0;           ///< where in the sound file to begin, in the file's own seconds
    double breathRate = 1;              ///< the speed of playing, 0.5...2

    explicit BreathAudioPlan(const BreathAudioContext& context);
};

} // namespace FellowCore
