#pragma once

namespace Platform {

enum class DisplayState {
    reachable,
    notSet,      ///< no display is named in the environment
    unreachable, ///< one is named, but nothing answers there or it refuses us
};

/// Whether there is a display to open windows on. For `main` to ask before it makes the application object,
/// which ends the process when there is none. Blocks for a round trip.
DisplayState displayState();
inline bool displayIsReachable() {
    return displayState() == DisplayState::reachable;
}

} // namespace Platform
