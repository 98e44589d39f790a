#pragma once

#include "core/base/Instant.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace FellowCore {

/// Claude's usage: an estimate from its logs, or the exact reading that its status line passes on. Only the
/// latter knows a week's percentage.
struct PumpClaudeUsage {
    static constexpr Seconds blockLength = 18000; ///< five hours

    std::int64_t blockTokens = 0; ///< input and output in the block, both caches left out
    std::int64_t weekTokens = 0;  ///< the same since the week began
    std::optional<Instant> blockStart = std::nullopt;
    std::optional<Instant> resetsAt = std::nullopt;
    double usedPercent = 0; ///< of the five hours; an estimate may exceed 100
    bool hasLogs = false;
    std::optional<double> weekUsedPercent = std::nullopt; ///< 0...100; 0 also when the exact reading has none

    bool isExact() const { return weekUsedPercent.has_value(); }
    /// 0...100
    double leftPercent() const;

    /// The reading in the file that the status line writes:
    /// {"five_hour":{"used_percentage":0...100,"resets_at":UNIX
    /// SECONDS},"seven_day":{"used_percentage":...}}. Nothing when it is not that, or when its five hours
    /// have passed.
    static std::optional<PumpClaudeUsage> exact(std::string_view rateLimitsJSON, Instant now);

    friend bool operator==(const PumpClaudeUsage&, const PumpClaudeUsage&) = default;
};

} // namespace FellowCore
