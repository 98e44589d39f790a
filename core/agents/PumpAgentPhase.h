#pragma once

#include "core/base/Instant.h"

#include <optional>
#include <string_view>

namespace FellowCore {

/// What an agent session is doing, as its last event tells.
enum class PumpAgentPhase { working, needsYou, done };

/// The name in files: "working", "needs_you" or "done".
std::string_view rawValue(PumpAgentPhase phase);
std::optional<PumpAgentPhase> pumpAgentPhaseFromRawValue(std::string_view text);
/// "WORKING", "NEEDS YOU", "DONE".
std::string_view title(PumpAgentPhase phase);
/// How long an event of this phase says anything about the session. An agent can die without telling.
Seconds lifetime(PumpAgentPhase phase);

} // namespace FellowCore
