#pragma once

#include "core/base/Instant.h"
#include "core/pump/PumpClaudeUsage.h"
#include "core/pump/PumpCodexUsage.h"
#include "core/pump/PumpProvider.h"
#include "core/pump/PumpSourceState.h"

#include <optional>
#include <string>

namespace FellowCore {

/// What was known of both agents' usage at one moment.
struct PumpUsageSnapshot {
    Instant at;
    std::optional<PumpCodexUsage> codex = std::nullopt;
    PumpClaudeUsage claude = {};
    bool isLoading = false; ///< there is more to read
    PumpSourceState codexSource = PumpSourceState::missing;
    PumpSourceState claudeSource = PumpSourceState::missing;

    /// The agent whose limit is nearest among those that can be trusted; Codex on a tie.
    std::optional<PumpProvider> mostUsedProvider() const;
    /// How much of that agent's allowance is left, 0...100.
    std::optional<double> displayLeftPercent() const;
    /// How long ago the snapshot was taken, such as "Updated 5 min ago".
    std::string updatedDescription(Instant now) const;

    friend bool operator==(const PumpUsageSnapshot&, const PumpUsageSnapshot&) = default;
};

} // namespace FellowCore
