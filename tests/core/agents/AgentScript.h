#pragma once

#include "core/agents/PumpAgentEvent.h"

#include <string>

namespace FellowCore {

/// Times in these tests are counted from here.
inline constexpr double agentEpoch = 1'800'000'000;

inline Instant after(Seconds seconds) {
    return Instant::fromUnix(agentEpoch + seconds);
}

inline PumpAgentEvent agentEvent(std::string session, PumpAgentPhase phase, Seconds at,
                                 PumpProvider agent = PumpProvider::claude) {
    PumpAgentEvent event{.agent = agent, .event = phase, .sessionID = std::move(session)};
    event.timestamp = agentEpoch + at;
    return event;
}

} // namespace FellowCore
