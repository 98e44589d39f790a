#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace FellowCore {

enum class TimerStatus { idle, running, paused, completed };

inline constexpr std::array allTimerStatuses{TimerStatus::idle, TimerStatus::running, TimerStatus::paused,
                                             TimerStatus::completed};

/// The word files keep: "idle", "running", "paused", "completed".
std::string_view rawValue(TimerStatus status);
std::optional<TimerStatus> timerStatusFromRawValue(std::string_view text);

/// The pose a character with a timer takes: "active" while running, "paused", "complete", otherwise "idle".
std::string_view timerPose(TimerStatus status);

} // namespace FellowCore
