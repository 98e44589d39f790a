#pragma once

#include <functional>

namespace Platform {

/// What happens to the user's session as a whole. Calls come on the main loop. Without a system or session
/// bus nothing is ever called and nothing else changes.
class SessionEvents {
public:
    virtual ~SessionEvents() = default;

    /// The machine is about to sleep. Sleep waits until this returns (as long as the system allows, usually
    /// five seconds), so state can be saved in it.
    std::function<void()> onWillSleep;
    std::function<void()> onDidWake;
    /// The screen was locked or unlocked; repeated news of the same state is not passed on.
    std::function<void()> onLocked;
    std::function<void()> onUnlocked;
    /// The session went to the background, as when another user takes the seat.
    std::function<void()> onSessionInactive;
    /// It came back from there.
    std::function<void()> onSessionActive;
};

} // namespace Platform
