#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace FellowCore {

/// What Claude Code tells a status line, as far as it is kept or shown.
struct ClaudeRateLimits {
    static constexpr std::string_view fileName = "claude-rate-limits.json";
    static constexpr std::size_t maximumBytes = 1048576; ///< of an input; a longer one counts as unreadable

    std::string fiveHour = "null"; ///< JSON text of an object as it came, or null
    std::string sevenDay = "null"; ///< likewise
    std::string modelName;         ///< for display; may be empty

    /// Takes what it finds; an input that cannot be understood gives nothing but nulls.
    static ClaudeRateLimits parse(std::string_view input);
    /// The bytes of the file that Pump reads. `savedAt` is in whole seconds since 1970.
    std::string file(std::int64_t savedAt) const;
};

} // namespace FellowCore
