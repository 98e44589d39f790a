#pragma once

#include "core/base/Json.h"

#include <optional>
#include <string>

namespace FellowCore {

/// What the media stream says about the player itself: its name, and what it can be told.
struct NowPlayingControls {
    std::optional<std::string> displayName; ///< as people know it, when there is one
    bool canPlayPause = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
    bool canRaise = false; ///< can bring its window up

    /// From the state as `NowPlayingParser::fields` has it; what is absent or of another type is not there.
    static NowPlayingControls from(const Json& fields);

    friend bool operator==(const NowPlayingControls&, const NowPlayingControls&) = default;
};

} // namespace FellowCore
