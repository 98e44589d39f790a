#pragma once

#include "core/base/Instant.h"

#include <optional>
#include <string>

namespace FellowCore {

/// How the digits on the pump roll from one figure to the next.
struct PumpDigitMotion {
    static constexpr Seconds duration = 0.22;
    static constexpr int glyphRows = 7; ///< the height of a digit

    /// How many rows of the new digits have rolled in, 0...7; all of them under reduced motion and for a time
    /// that is negative or not finite.
    static int rows(Seconds elapsed, bool reduceMotion);
    /// Three characters: the whole percent, padded with spaces, or "---" where a gauge would be unknown.
    static std::string glyphs(std::optional<double> leftPercent);
};

} // namespace FellowCore
