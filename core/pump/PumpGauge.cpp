#include "core/pump/PumpGauge.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

constexpr double redUpTo = 5;
constexpr double amberBelow = 20;

PumpGaugeLight lightFor(double left) {
    if (left <= redUpTo) {
        return PumpGaugeLight::red;
    }
    return left < amberBelow ? PumpGaugeLight::amber : PumpGaugeLight::normal;
}

} // namespace

std::string_view rawValue(PumpGaugeLight light) {
    switch (light) {
    case PumpGaugeLight::unknown:
        return "unknown";
    case PumpGaugeLight::normal:
        return "normal";
    case PumpGaugeLight::amber:
        return "amber";
    case PumpGaugeLight::red:
        return "red";
    }
    return {};
}

PumpGauge::PumpGauge(std::optional<double> leftPercent) {
    if (!leftPercent || !std::isfinite(*leftPercent)) {
        return;
    }
    const double left = std::clamp(*leftPercent, 0.0, 100.0);
    light = lightFor(left);
    tankFraction = left / 100;
    digits = static_cast<int>(std::floor(left));
}

PumpGauge::PumpGauge(const PumpUsageSnapshot& snapshot) : PumpGauge(snapshot.displayLeftPercent()) {}

} // namespace FellowCore
