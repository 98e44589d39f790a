#include "core/agents/PumpAgentPhase.h"

#include <array>

namespace FellowCore {

namespace {

struct Row {
    PumpAgentPhase phase;
    std::string_view raw;
    std::string_view title;
    Seconds lifetime;
};

constexpr std::array rows{
    Row{PumpAgentPhase::working, "working", "WORKING", 7200},
    Row{PumpAgentPhase::needsYou, "needs_you", "NEEDS YOU", 1800},
    Row{PumpAgentPhase::done, "done", "DONE", 600},
};

const Row& rowOf(PumpAgentPhase phase) {
    return rows[static_cast<std::size_t>(phase)];
}

} // namespace

std::string_view rawValue(PumpAgentPhase phase) {
    return rowOf(phase).raw;
}

std::optional<PumpAgentPhase> pumpAgentPhaseFromRawValue(std::string_view text) {
    for (const Row& row : rows) {
        if (row.raw == text) {
            return row.phase;
        }
    }
    return std::nullopt;
}

std::string_view title(PumpAgentPhase phase) {
    return rowOf(phase).title;
}

Seconds lifetime(PumpAgentPhase phase) {
    return rowOf(phase).lifetime;
}

} // namespace FellowCore
