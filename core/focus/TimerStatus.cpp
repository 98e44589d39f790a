#include "core/focus/TimerStatus.h"

namespace FellowCore {

std::string_view rawValue(TimerStatus status) {
    switch (status) {
    case TimerStatus::idle:
        return "idle";
    case TimerStatus::running:
        return "running";
    case TimerStatus::paused:
        return "paused";
    case TimerStatus::completed:
        break;
    }
    return "completed";
}

std::optional<TimerStatus> timerStatusFromRawValue(std::string_view text) {
    for (const TimerStatus status : allTimerStatuses) {
        if (rawValue(status) == text) {
            return status;
        }
    }
    return std::nullopt;
}

std::string_view timerPose(TimerStatus status) {
    switch (status) {
    case TimerStatus::running:
        return "active";
    case TimerStatus::paused:
        return "paused";
    case TimerStatus::completed:
        return "complete";
    case TimerStatus::idle:
        break;
    }
    return "idle";
}

} // namespace FellowCore
