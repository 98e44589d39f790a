#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace FellowCore {

/// The parts of one focus-and-rest cycle.
enum class TimerPhase { focus, shortBreak, longBreak };

inline constexpr std::array allTimerPhases{TimerPhase::focus, TimerPhase::shortBreak, TimerPhase::longBreak};

/// The word shown to the user: "Focus", "Short rest", "Long rest".
std::string_view title(TimerPhase phase);
/// The word files keep: "focus", "shortBreak", "longBreak".
std::string_view rawValue(TimerPhase phase);
std::optional<TimerPhase> timerPhaseFromRawValue(std::string_view text);

} // namespace FellowCore
