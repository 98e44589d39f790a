#include "core/breathing/BreathingSettings.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

Seconds normalizedLength(BreathingPhase phase, Seconds length) {
    constexpr Seconds step = BreathingSettings::step;
    return std::round(BreathingSettings::limits(phase).clamped(length) / step) * step;
}

BreathingSettings preset(BreathingMode mode) {
    switch (mode) {
    case BreathingMode::calm:
        return {/*inhale*/ 5, /*hold*/ 0, /*exhale*/ 5, /*rounds*/ 6};
    case BreathingMode::reset:
        return {/*inhale*/ 3, /*hold*/ 0, /*exhale*/ 6, /*rounds*/ 6, /*rest*/ 0, /*sip*/ 1};
    case BreathingMode::box:
        return {/*inhale*/ 4, /*hold*/ 4, /*exhale*/ 4, /*rounds*/ 4, /*rest*/ 4};
    case BreathingMode::fourSevenEight:
        return {/*inhale*/ 4, /*hold*/ 7, /*exhale*/ 8, /*rounds*/ 4};
    case BreathingMode::custom:
        break;
    }
    return {/*inhale*/ 4, /*hold*/ 2, /*exhale*/ 6, /*rounds*/ 5};
}

} // namespace

Seconds BreathingLimits::clamped(Seconds length) const {
    return std::isfinite(length) ? std::min(longest, std::max(shortest, length)) : fallback;
}

BreathingSettings::BreathingSettings(Seconds in, Seconds full, Seconds out, int times, Seconds empty,
                                     Seconds second)
    : inhale(normalizedLength(BreathingPhase::inhale, in)),
      hold(normalizedLength(BreathingPhase::hold, full)),
      exhale(normalizedLength(BreathingPhase::exhale, out)), rounds(std::clamp(times, 1, mostRounds)),
      rest(normalizedLength(BreathingPhase::rest, empty)),
      sip(normalizedLength(BreathingPhase::sip, second)) {}

BreathingSettings BreathingSettings::normalized() const {
    return {inhale, hold, exhale, rounds, rest, sip};
}

BreathingMode BreathingSettings::mode() const {
    for (const BreathingMode mode : allBreathingModes) {
        BreathingSettings known = preset(mode);
        known.rounds = rounds;
        if (known == *this) {
            return mode;
        }
    }
    return BreathingMode::custom;
}

BreathingSettings BreathingSettings::forMinutes(int minutes, std::optional<BreathingMode> chosen) const {
    BreathingSettings result = normalized();
    const double needed = std::ceil(minutes * 60.0 / result.cycle());
    const double cap = roundsCap(chosen.value_or(result.mode()));
    result.rounds = static_cast<int>(std::clamp(needed, 1.0, cap));
    return result;
}

Seconds BreathingSettings::duration(BreathingPhase phase) const {
    switch (phase) {
    case BreathingPhase::settle:
        break;
    case BreathingPhase::inhale:
        return inhale;
    case BreathingPhase::sip:
        return sip;
    case BreathingPhase::hold:
        return hold;
    case BreathingPhase::exhale:
        return exhale;
    case BreathingPhase::rest:
        return rest;
    }
    return 0;
}

Seconds BreathingSettings::offset(BreathingPhase phase) const {
    switch (phase) {
    case BreathingPhase::settle:
    case BreathingPhase::inhale:
        break;
    case BreathingPhase::sip:
        return inhale;
    case BreathingPhase::hold:
        return inhale + sip;
    case BreathingPhase::exhale:
        return inhale + sip + hold;
    case BreathingPhase::rest:
        return inhale + sip + hold + exhale;
    }
    return 0;
}

Seconds BreathingSettings::cycle() const {
    return inhale + sip + hold + exhale + rest;
}

BreathingLimits BreathingSettings::limits(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::settle:
        return {.shortest = 0, .longest = 3, .fallback = 3};
    case BreathingPhase::inhale:
        return {.shortest = 2, .longest = 8, .fallback = 4};
    case BreathingPhase::exhale:
        return {.shortest = 2, .longest = 12, .fallback = 6};
    case BreathingPhase::sip:
        return {.shortest = 0, .longest = 2, .fallback = 0};
    case BreathingPhase::hold:
    case BreathingPhase::rest:
        break;
    }
    return {.shortest = 0, .longest = 8, .fallback = 0};
}

BreathingSettings settings(BreathingMode mode, std::optional<int> rounds) {
    BreathingSettings result = preset(mode);
    if (rounds) {
        result.rounds = std::clamp(*rounds, 1, roundsCap(mode));
    }
    return result;
}

} // namespace FellowCore
