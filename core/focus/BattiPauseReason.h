#pragma once

#include <string_view>

namespace FellowCore {

/// Why Batti stopped without being told to.
enum class BattiPauseReason { hidden, asleep };

/// "Paused while hidden", "Paused while asleep".
std::string_view title(BattiPauseReason reason);
/// "hidden", "asleep".
std::string_view rawValue(BattiPauseReason reason);

} // namespace FellowCore
