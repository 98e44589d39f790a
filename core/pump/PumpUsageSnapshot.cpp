#include "core/pump/PumpUsageSnapshot.h"

#include <cmath>
#include <cstdint>

namespace FellowCore {

std::optional<PumpProvider> PumpUsageSnapshot::mostUsedProvider() const {
    const bool hasCodex = codexSource == PumpSourceState::ready && codex && !codex->isStale(at) &&
                          std::isfinite(codex->usedPercent);
    const bool hasClaude = claude.hasLogs && claudeSource == PumpSourceState::ready;
    if (hasClaude && (!hasCodex || codex->usedPercent < claude.usedPercent)) {
        return PumpProvider::claude;
    }
    return hasCodex ? std::optional(PumpProvider::codex) : std::nullopt;
}

std::optional<double> PumpUsageSnapshot::displayLeftPercent() const {
    const auto provider = mostUsedProvider();
    if (!provider) {
        return std::nullopt;
    }
    return *provider == PumpProvider::codex ? codex->leftPercent() : claude.leftPercent();
}

std::string PumpUsageSnapshot::updatedDescription(Instant now) const {
    constexpr Seconds minute = 60;
    constexpr Seconds hour = 3600;
    const Seconds age = now - at;
    if (!(age >= minute) || std::isinf(age)) { // what is not a number is no age either
        return "Updated just now";
    }
    const auto whole = [age](Seconds unit) { return std::to_string(static_cast<std::int64_t>(age / unit)); };
    return age < hour ? "Updated " + whole(minute) + " min ago" : "Updated " + whole(hour) + " h ago";
}

} // namespace FellowCore
