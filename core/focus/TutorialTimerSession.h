#pragma once

#include "core/focus/FocusTimer.h"

#include <optional>
#include <string>

namespace FellowCore {

/// What the guided tour puts back when it ends.
struct TutorialReturnState {
    std::string characterID;
    bool wasVisible = false;

    friend bool operator==(const TutorialReturnState&, const TutorialReturnState&) = default;
};

/// The displayed timer, which the guided tour can exchange for a short demonstration without touching the
/// user's.
struct TutorialTimerSession {
    struct Saved {
        FocusTimer timer;
        TutorialReturnState context;
    };

    FocusTimer timer;           ///< the one on display
    std::optional<Saved> saved; ///< the user's, while a demonstration is open

    explicit TutorialTimerSession(FocusTimer shown = FocusTimer());

    bool isDemo() const { return saved.has_value(); }
    std::optional<TutorialReturnState> returnState() const;
    /// What must be written to disk: never a demonstration.
    const FocusTimer& persistent() const { return saved ? saved->timer : timer; }

    /// Opens a demonstration with a fresh idle timer at the same settings. False when one is open already.
    bool begin(std::string characterID, bool wasVisible);
    /// Applies to the user's timer and to the one on display.
    void updateSettings(const TimerSettings& changed);
    /// Puts the user's timer back. Nothing when no demonstration is open.
    std::optional<TutorialReturnState> finish();
};

} // namespace FellowCore
