#pragma once

#include <array>
#include <string_view>

namespace FellowCore {

/// The parts of a breathing session: once `settle`, then over and over the others, in this order. `sip` is
/// the short second breath on top of the first; `hold` is kept full, `rest` empty.
enum class BreathingPhase { settle, inhale, sip, hold, exhale, rest };

inline constexpr std::array allBreathingPhases{BreathingPhase::settle, BreathingPhase::inhale,
                                               BreathingPhase::sip,    BreathingPhase::hold,
                                               BreathingPhase::exhale, BreathingPhase::rest};

/// What Mira says at its beginning, such as "Breathe in". `hold` and `rest` share one sentence.
std::string_view title(BreathingPhase phase);
/// The case's name, such as "inhale".
std::string_view rawValue(BreathingPhase phase);

} // namespace FellowCore
