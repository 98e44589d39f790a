#include "core/breathing/BreathingMode.h"

#include "core/breathing/BreathingSettings.h"

namespace FellowCore {

std::string_view title(BreathingMode mode) {
    switch (mode) {
    case BreathingMode::calm:
        return "Calm";
    case BreathingMode::reset:
        return "Reset";
    case BreathingMode::box:
        return "Box · 4–4–4–4";
    case BreathingMode::fourSevenEight:
        return "4–7–8";
    case BreathingMode::custom:
        break;
    }
    return "Custom";
}

std::string_view rawValue(BreathingMode mode) {
    switch (mode) {
    case BreathingMode::calm:
        return "calm";
    case BreathingMode::reset:
        return "reset";
    case BreathingMode::box:
        return "box";
    case BreathingMode::fourSevenEight:
        return "fourSevenEight";
    case BreathingMode::custom:
        break;
    }
    return "custom";
}

std::optional<BreathingMode> breathingModeFromRawValue(std::string_view text) {
    for (const BreathingMode mode : allBreathingModes) {
        if (rawValue(mode) == text) {
            return mode;
        }
    }
    return std::nullopt;
}

int roundsCap(BreathingMode mode) {
    return mode == BreathingMode::fourSevenEight ? 8 : BreathingSettings::mostRounds;
}

} // namespace FellowCore
