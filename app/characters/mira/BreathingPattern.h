#pragma once

#include "core/breathing/BreathingSettings.h"

#include <optional>
#include <string>
#include <string_view>

namespace DeskSprites {

/// A rhythm of the user's own, under a name. The rounds of `lengths` mean nothing.
struct BreathingPattern {
    static constexpr std::size_t longestName = 40; ///< user-perceived characters

    std::string name; ///< not empty
    FellowCore::BreathingSettings lengths;

    /// One line for the preferences: the seconds of inhale, hold, exhale, rest and sip, then the name. "4 2 6
    /// 0 0 Evening".
    std::string text() const;
    /// What `text` wrote, normalised; nothing when it is no such line.
    static std::optional<BreathingPattern> fromText(std::string_view text);

    friend bool operator==(const BreathingPattern&, const BreathingPattern&) = default;
};

/// The five lengths alone: "4 2 6 0 0".
std::string lengthsText(const FellowCore::BreathingSettings& lengths);
std::optional<FellowCore::BreathingSettings> lengthsFromText(std::string_view text);

/// A name as it may be kept: one line without white space at its ends, no longer than the limit. May be
/// empty.
std::string cleanPatternName(std::string_view name);

} // namespace DeskSprites
