#include "core/agents/PumpAgentState.h"

#include <algorithm>
#include <tuple>

namespace FellowCore {

namespace {

constexpr std::size_t maximumSeen = 200;
/// Beyond so many sessions the dead ones are forgotten, so that a program that runs for months stays small.
constexpr std::size_t maximumLatest = 1000;
constexpr Seconds clockTolerance = 5;

bool isFromTheFuture(const PumpAgentEvent& event, Instant at) {
    return event.age(at) < -clockTolerance;
}

bool isLive(const PumpAgentEvent& event, Instant at) {
    return event.age(at) < lifetime(event.event) && !isFromTheFuture(event, at);
}

int rank(PumpAgentPhase phase) {
    switch (phase) {
    case PumpAgentPhase::needsYou:
        return 3;
    case PumpAgentPhase::done:
        return 2;
    case PumpAgentPhase::working:
        return 1;
    }
    return 0;
}

bool isMoreUrgent(const PumpAgentEvent& left, const PumpAgentEvent& right) {
    const int leftRank = rank(left.event);
    const int rightRank = rank(right.event);
    if (leftRank != rightRank) {
        return leftRank > rightRank;
    }
    return left.timestamp != right.timestamp ? left.timestamp > right.timestamp : left.key() < right.key();
}

} // namespace

std::vector<PumpAgentEvent> PumpAgentState::ingest(const std::vector<PumpAgentEvent>& events, Instant at) {
    std::vector<PumpAgentEvent> alerts;
    for (const PumpAgentEvent& event : events) {
        if (take(event, at)) {
            alerts.push_back(event);
        }
    }
    std::ranges::stable_sort(alerts, std::greater(), &PumpAgentEvent::timestamp);
    if (latest.size() > maximumLatest) {
        forgetTheDead(at);
    }
    return alerts;
}

/// Whether the event newly demands attention.
bool PumpAgentState::take(const PumpAgentEvent& event, Instant at) {
    if (std::ranges::find(seen, event) != seen.end()) {
        return false;
    }
    seen.push_back(event);
    if (seen.size() > maximumSeen) {
        seen.pop_front();
    }
    if (isFromTheFuture(event, at)) {
        return false;
    }
    const auto [place, isNew] = latest.try_emplace(event.key(), event);
    bool wasAsking = false;
    if (!isNew) {
        const PumpAgentEvent& previous = place->second;
        if (event.timestamp < previous.timestamp) {
            return false;
        }
        wasAsking = previous.event == PumpAgentPhase::needsYou &&
                    event.timestamp - previous.timestamp < lifetime(PumpAgentPhase::needsYou);
        place->second = event;
    }
    return event.event == PumpAgentPhase::needsYou && isLive(event, at) && !wasAsking;
}

void PumpAgentState::forgetTheDead(Instant at) {
    std::erase_if(latest, [at](const auto& entry) { return !isLive(entry.second, at); });
}

std::vector<PumpAgentEvent> PumpAgentState::sessions(Instant at) const {
    std::vector<PumpAgentEvent> live;
    for (const auto& [key, event] : latest) {
        if (isLive(event, at)) {
            live.push_back(event);
        }
    }
    std::ranges::sort(live, isMoreUrgent);
    return live;
}

std::optional<PumpAgentEvent> PumpAgentState::mostUrgent(Instant at) const {
    const auto live = sessions(at);
    return live.empty() ? std::nullopt : std::optional(live.front());
}

void PumpAgentState::clear(PumpProvider agent) {
    std::erase_if(latest, [agent](const auto& entry) { return entry.second.agent == agent; });
}

} // namespace FellowCore
