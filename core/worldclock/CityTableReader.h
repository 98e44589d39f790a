#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace FellowCore {

/// One line of the city table, as views into it.
struct CityTableRow {
    std::string_view name;
    std::string_view plainName; ///< ASCII; empty when it is the name
    std::string_view region;    ///< first level; may be empty
    std::string_view country;
    std::string_view zone;
    std::int64_t population = 0; ///< in thousands
    std::string_view alternates; ///< separated by "|"

    /// Nothing for a line of fewer than seven columns, one without a name or zone, or one whose population is
    /// no whole number. Columns after the seventh are ignored.
    static std::optional<CityTableRow> parse(std::string_view line);
};

/// Takes the text before the next separator off the front of `rest`, the separator too.
std::string_view takeField(std::string_view& rest, char separator);

} // namespace FellowCore
