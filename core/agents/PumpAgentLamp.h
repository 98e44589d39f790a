#pragma once

#include "core/agents/PumpAgentPhase.h"
#include "core/base/Instant.h"

#include <optional>
#include <string_view>

namespace FellowCore {

/// Pump's lamp: which art shows what the most urgent session is doing.
struct PumpAgentLamp {
    /// The name of the art, or nothing when there is no session. Red blinks twice a second by the wall clock,
    /// unless motion is reduced; `at` may be any time.
    static std::optional<std::string_view> pose(std::optional<PumpAgentPhase> phase, Instant at,
                                                bool reduceMotion);
    /// How long each half of a blink lasts, in seconds.
    static constexpr Seconds blinkHalf = 0.25;
};

} // namespace FellowCore
