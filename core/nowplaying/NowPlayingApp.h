#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore::NowPlayingApp {

/// The short name of the application that plays: ours where it is well known, else `fallback` (its own name),
/// else the last part of its identifier between full stops.
std::string name(std::string_view bundleID, const std::optional<std::string>& fallback);

} // namespace FellowCore::NowPlayingApp
