#pragma once

#include <span>
#include <string_view>
#include <utility>

namespace FellowCore {

/// Words that people type for a time zone and that are no zone identifiers or mean another zone than the
/// identifier of that name: abbreviations of times, and short or former names of countries.
std::span<const std::pair<std::string_view, std::string_view>> worldClockWordAliases();

} // namespace FellowCore
