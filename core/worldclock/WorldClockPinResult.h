#pragma once

namespace FellowCore {

/// What became of a wish to pin a city to the tower or to take it off.
enum class WorldClockPinResult {
    pinned,
    unpinned,
    unchanged,    ///< it was so already
    limitReached, ///< the tower has all the faces it can have
    homeCity,     ///< home always has the large face
    cityNotAdded, ///< only a city of the list can be pinned
};

} // namespace FellowCore
