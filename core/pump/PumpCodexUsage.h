#pragma once

#include "core/base/Instant.h"

#include <optional>
#include <string>

namespace FellowCore {

/// The newest rate limit that Codex wrote into its log.
struct PumpCodexUsage {
    double usedPercent = 0;   ///< 0...100
    double windowMinutes = 0; ///< above 0
    std::optional<Instant> resetsAt = std::nullopt;
    std::optional<std::string> planType = std::nullopt;
    Instant observedAt;

    /// 0...100
    double leftPercent() const;
    /// Whether the window that was sampled has ended. Without a reset time it never has.
    bool isStale(Instant at) const;

    friend bool operator==(const PumpCodexUsage&, const PumpCodexUsage&) = default;
};

} // namespace FellowCore
