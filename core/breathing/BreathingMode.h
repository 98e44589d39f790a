#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace FellowCore {

/// The rhythms Mira knows, and `custom` for the user's own. `settings` gives the lengths of each.
enum class BreathingMode { calm, reset, box, fourSevenEight, custom };

inline constexpr std::array allBreathingModes{BreathingMode::calm, BreathingMode::reset, BreathingMode::box,
                                              BreathingMode::fourSevenEight, BreathingMode::custom};

/// The word shown to the user, such as "Calm" or "4–7–8".
std::string_view title(BreathingMode mode);
/// The case's name, such as "fourSevenEight".
std::string_view rawValue(BreathingMode mode);
std::optional<BreathingMode> breathingModeFromRawValue(std::string_view text);
/// The most rounds that the rhythm may be chosen for: 8 for `fourSevenEight`, whose long holds tire,
/// otherwise 75.
int roundsCap(BreathingMode mode);

} // namespace FellowCore
