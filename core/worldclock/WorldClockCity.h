#pragma once

#include "core/base/Calendar.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// A city whose time is shown.
struct WorldClockCity {
    std::string identifier; ///< stable: "zone|name|region", or a bare zone that has no city
    std::string name;       ///< with its native letters
    std::string region;     ///< "Bavaria, Germany"; may be empty

    /// Nothing when the identifier's zone is not valid on this system.
    std::optional<Calendar> timeZone() const;
    /// The part of an identifier up to the first "|".
    static std::string_view zoneOf(std::string_view identifier);

    friend bool operator==(const WorldClockCity&, const WorldClockCity&) = default;
};

} // namespace FellowCore
