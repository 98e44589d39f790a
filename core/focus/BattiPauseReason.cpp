#include "core/focus/BattiPauseReason.h"

namespace FellowCore {

std::string_view title(BattiPauseReason reason) {
    return reason == BattiPauseReason::hidden ? "Paused while hidden" : "Paused while asleep";
}

std::string_view rawValue(BattiPauseReason reason) {
    return reason == BattiPauseReason::hidden ? "hidden" : "asleep";
}

} // namespace FellowCore
