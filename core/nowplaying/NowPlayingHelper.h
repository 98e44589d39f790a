#pragma once

namespace FellowCore::NowPlayingHelper {

/// The program that follows media players, beside the others.
constexpr auto programName = "fellow-media";

/// Its exit status.
constexpr int ended = 0;   ///< nobody reads or speaks to it any more
constexpr int misused = 2; ///< it takes no arguments
constexpr int noSessionBus =
    69; ///< there is none to follow players on, or it went away (sysexits: unavailable)

} // namespace FellowCore::NowPlayingHelper
