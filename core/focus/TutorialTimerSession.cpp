#include "core/focus/TutorialTimerSession.h"

#include <utility>

namespace FellowCore {

TutorialTimerSession::TutorialTimerSession(FocusTimer shown) : timer(std::move(shown)) {}

std::optional<TutorialReturnState> TutorialTimerSession::returnState() const {
    return saved ? std::optional(saved->context) : std::nullopt;
}

bool TutorialTimerSession::begin(std::string characterID, bool wasVisible) {
    if (isDemo()) {
        return false;
    }
    saved = Saved{timer, {std::move(characterID), wasVisible}};
    timer = FocusTimer(timer.settings);
    return true;
}

void TutorialTimerSession::updateSettings(const TimerSettings& changed) {
    if (saved) {
        saved->timer.updateSettings(changed);
    }
    timer.updateSettings(changed);
}

std::optional<TutorialReturnState> TutorialTimerSession::finish() {
    if (!saved) {
        return std::nullopt;
    }
    Saved restored = std::exchange(saved, std::nullopt).value();
    timer = std::move(restored.timer);
    return std::move(restored.context);
}

} // namespace FellowCore
