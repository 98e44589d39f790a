#pragma once

#include "core/base/Instant.h"

#include <optional>

namespace DeskSprites {

/// How brightly Batti's lamp burns at each moment: steady, in a flash when a phase changes or ends, or
/// breathing while a phase is paused. Pure; it is told the time.
class LampLight {
public:
    /// No motion at all: the lamp is steady.
    void setReduced(bool reduced) { reduced_ = reduced; }
    /// Whether the lamp breathes, from `at` on.
    void setPulses(bool pulses, FellowCore::MonotonicInstant at);
    void flashPhase(FellowCore::MonotonicInstant at);
    void flashCompletion(FellowCore::MonotonicInstant at);
    /// Ends a flash at once.
    void clearFlashes();

    /// 0...1.
    double brightness(FellowCore::MonotonicInstant at) const;
    /// How long the brightness of `at` stays; nothing when it stays until something happens.
    std::optional<FellowCore::Seconds> untilNextChange(FellowCore::MonotonicInstant at) const;

private:
    bool reduced_ = false;
    std::optional<FellowCore::MonotonicInstant> pulseStart_;
    std::optional<FellowCore::MonotonicInstant> transitionStart_;
    std::optional<FellowCore::MonotonicInstant> completionStart_;
};

} // namespace DeskSprites
