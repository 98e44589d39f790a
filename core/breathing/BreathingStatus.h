#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace FellowCore {

enum class BreathingStatus { idle, running, paused, completed };

inline constexpr std::array allBreathingStatuses{BreathingStatus::idle, BreathingStatus::running,
                                                 BreathingStatus::paused, BreathingStatus::completed};

/// The word files keep: "idle", "running", "paused", "completed".
std::string_view rawValue(BreathingStatus status);
std::optional<BreathingStatus> breathingStatusFromRawValue(std::string_view text);

} // namespace FellowCore
