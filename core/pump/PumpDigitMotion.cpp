#include "core/pump/PumpDigitMotion.h"

#include "core/pump/PumpGauge.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

int PumpDigitMotion::rows(Seconds elapsed, bool reduceMotion) {
    if (reduceMotion || elapsed < 0 || !std::isfinite(elapsed)) {
        return glyphRows;
    }
    return std::min(glyphRows, static_cast<int>(std::min(elapsed / duration, 1.0) * glyphRows));
}

std::string PumpDigitMotion::glyphs(std::optional<double> leftPercent) {
    const auto digits = PumpGauge(leftPercent).digits;
    if (!digits) {
        return "---";
    }
    const std::string text = std::to_string(*digits);
    return std::string(3 - text.size(), ' ') + text;
}

} // namespace FellowCore
