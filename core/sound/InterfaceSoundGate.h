#pragma once

#include "core/base/Instant.h"
#include "core/sound/InterfaceSoundCue.h"

#include <optional>

namespace FellowCore {

/// Decides whether a cue may sound now, so that a flurry of events makes one sound and guidance is not talked
/// over.
struct InterfaceSoundGate {
    static constexpr Seconds spacing = 0.09; ///< the least time from one sound to the next

    std::optional<Seconds> lastPlayed; ///< when the gate last said yes, on the caller's clock

    /// Yes when `at` is finite, sounds are `enabled`, no guidance is in progress, the character is not muted,
    /// and the last sound is at least `spacing` old. `miraComplete` needs no spacing, and neither does a time
    /// before `lastPlayed`, as after a clock was set back. On yes, and only then, `lastPlayed` becomes `at`.
    bool permits(InterfaceSoundCue cue, bool enabled, bool guidanceActive, bool characterMuted, Seconds at);

    /// Forgets the last sound.
    void reset() { lastPlayed.reset(); }
};

} // namespace FellowCore
