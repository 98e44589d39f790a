#include "core/focus/TimerSettings.h"

#include <algorithm>

namespace FellowCore {

TimerSettings::TimerSettings(int focus, int shortBreak, int longBreak, int every, bool restsBegin)
    : focusMinutes(std::clamp(focus, 1, 120)), shortBreakMinutes(std::clamp(shortBreak, 1, 60)),
      longBreakMinutes(std::clamp(longBreak, 1, 120)), longBreakEvery(std::clamp(every, 1, 12)),
      startRestsAutomatically(restsBegin) {}

TimerSettings TimerSettings::sanitized() const {
    return TimerSettings(focusMinutes, shortBreakMinutes, longBreakMinutes, longBreakEvery,
                         startRestsAutomatically);
}

Seconds TimerSettings::duration(TimerPhase phase) const {
    const TimerSettings clamped = sanitized();
    switch (phase) {
    case TimerPhase::focus:
        return clamped.focusMinutes * 60.0;
    case TimerPhase::shortBreak:
        return clamped.shortBreakMinutes * 60.0;
    case TimerPhase::longBreak:
        break;
    }
    return clamped.longBreakMinutes * 60.0;
}

} // namespace FellowCore
