#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace FellowCore {

/// Which characters this build offers.
struct CharacterBuildPolicy {
    /// Keys of the installation's `build.json`.
    static constexpr const char* internKey = "DFIncludeIntern";
    static constexpr const char* noriKey = "DFIncludeNori";
    static constexpr const char* customerInternKey = "DFIncludeCustomerIntern";

    bool includeIntern = true;
    bool includeNori = false;
    bool includeCustomerIntern = true;

    /// The flags in the text of `build.json`. A flag that is missing or no boolean keeps its default, and so
    /// do all of them when the text is no JSON object. Never throws.
    static CharacterBuildPolicy fromBuildJson(std::string_view text);

    bool includes(std::string_view id) const;
    /// The identifier to bring back: `saved` when it is included and available, otherwise "batti".
    std::string restoredID(const std::optional<std::string>& saved,
                           const std::set<std::string>& available) const;

    friend bool operator==(const CharacterBuildPolicy&, const CharacterBuildPolicy&) = default;
};

} // namespace FellowCore
