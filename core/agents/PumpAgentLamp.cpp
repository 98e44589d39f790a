#include "core/agents/PumpAgentLamp.h"

#include <cmath>

namespace FellowCore {

namespace {

bool isDark(Instant at) {
    constexpr Seconds blink = 2 * PumpAgentLamp::blinkHalf;
    const double into = at.sinceReference - blink * std::floor(at.sinceReference / blink);
    return into >= PumpAgentLamp::blinkHalf;
}

} // namespace

std::optional<std::string_view> PumpAgentLamp::pose(std::optional<PumpAgentPhase> phase, Instant at,
                                                    bool reduceMotion) {
    if (!phase) {
        return std::nullopt;
    }
    switch (*phase) {
    case PumpAgentPhase::working:
        return "lamp-amber";
    case PumpAgentPhase::done:
        return "lamp-green";
    case PumpAgentPhase::needsYou:
        break;
    }
    return !reduceMotion && at.isFinite() && isDark(at) ? "lamp-red-dim" : "lamp-red";
}

} // namespace FellowCore
