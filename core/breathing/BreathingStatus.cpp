#include "core/breathing/BreathingStatus.h"

namespace FellowCore {

std::string_view rawValue(BreathingStatus status) {
    switch (status) {
    case BreathingStatus::idle:
        return "idle";
    case BreathingStatus::running:
        return "running";
    case BreathingStatus::paused:
        return "paused";
    case BreathingStatus::completed:
        break;
    }
    return "completed";
}

std::optional<BreathingStatus> breathingStatusFromRawValue(std::string_view text) {
    for (const BreathingStatus status : allBreathingStatuses) {
        if (rawValue(status) == text) {
            return status;
        }
    }
    return std::nullopt;
}

} // namespace FellowCore
