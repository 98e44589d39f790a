#pragma once

#include "core/pump/PumpUsageSnapshot.h"

#include <optional>
#include <string_view>

namespace FellowCore {

enum class PumpGaugeLight { unknown, normal, amber, red };

/// The case's name, such as "amber".
std::string_view rawValue(PumpGaugeLight light);

/// How much of one agent's allowance is left, as the tank, the digits and the lamp show it.
///
/// `leftPercent` is drawn into 0...100; anything absent or not finite makes an unknown gauge: no tank, no
/// digits.
struct PumpGauge {
    PumpGaugeLight light = PumpGaugeLight::unknown;    ///< red up to 5, amber below 20
    std::optional<double> tankFraction = std::nullopt; ///< 0...1
    std::optional<int> digits = std::nullopt;          ///< whole percent, rounded down

    explicit PumpGauge(std::optional<double> leftPercent);
    explicit PumpGauge(const PumpUsageSnapshot& snapshot);

    friend bool operator==(const PumpGauge&, const PumpGauge&) = default;
};

} // namespace FellowCore
