#pragma once

#include "core/agents/PumpAgentEvent.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace FellowCore {

/// What is known of every agent session: its newest event, for as long as that says anything.
struct PumpAgentState {
    std::map<std::string, PumpAgentEvent> latest; ///< by the event's key
    std::deque<PumpAgentEvent> seen;              ///< the last 200 events taken in, in order of arrival

    /// Takes in events in the order of the file and returns those that newly demand attention, newest first.
    /// An event already seen, one from the future (more than 5 seconds) and one older than what is known of
    /// its session change nothing.
    std::vector<PumpAgentEvent> ingest(const std::vector<PumpAgentEvent>& events, Instant at);
    /// The live sessions: those that need the user first, then the finished, then the working; the newer
    /// first among equals.
    std::vector<PumpAgentEvent> sessions(Instant at) const;
    /// The first of `sessions`.
    std::optional<PumpAgentEvent> mostUrgent(Instant at) const;
    /// Forgets every session of an agent.
    void clear(PumpProvider agent);

private:
    bool take(const PumpAgentEvent& event, Instant at);
    void forgetTheDead(Instant at);
};

} // namespace FellowCore
