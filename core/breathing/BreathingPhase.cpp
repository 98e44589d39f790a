#include "core/breathing/BreathingPhase.h"

namespace FellowCore {

std::string_view title(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::settle:
        return "Get comfortable";
    case BreathingPhase::inhale:
        return "Breathe in";
    case BreathingPhase::sip:
        return "A little more";
    case BreathingPhase::exhale:
        return "Breathe out";
    case BreathingPhase::hold:
    case BreathingPhase::rest:
        break;
    }
    return "Hold gently";
}

std::string_view rawValue(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::settle:
        return "settle";
    case BreathingPhase::inhale:
        return "inhale";
    case BreathingPhase::sip:
        return "sip";
    case BreathingPhase::hold:
        return "hold";
    case BreathingPhase::exhale:
        return "exhale";
    case BreathingPhase::rest:
        break;
    }
    return "rest";
}

} // namespace FellowCore
