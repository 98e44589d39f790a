#include "core/focus/TimerPhase.h"

namespace FellowCore {

std::string_view title(TimerPhase phase) {
    switch (phase) {
    case TimerPhase::focus:
        return "Focus";
    case TimerPhase::shortBreak:
        return "Short rest";
    case TimerPhase::longBreak:
        break;
    }
    return "Long rest";
}

std::string_view rawValue(TimerPhase phase) {
    switch (phase) {
    case TimerPhase::focus:
        return "focus";
    case TimerPhase::shortBreak:
        return "shortBreak";
    case TimerPhase::longBreak:
        break;
    }
    return "longBreak";
}

std::optional<TimerPhase> timerPhaseFromRawValue(std::string_view text) {
    for (const TimerPhase phase : allTimerPhases) {
        if (rawValue(phase) == text) {
            return phase;
        }
    }
    return std::nullopt;
}

} // namespace FellowCore
