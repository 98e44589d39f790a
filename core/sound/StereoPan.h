#pragma once

#include "core/base/Geometry.h"

namespace FellowCore {

/// How strongly a sound reaches each ear: factors on the amplitude, 0...1.
struct StereoGains {
    double left = 0;
    double right = 0;

    friend bool operator==(const StereoGains&, const StereoGains&) = default;
    friend StereoGains operator*(StereoGains gains, double volume) {
        return {gains.left * volume, gains.right * volume};
    }
};

/// How far to one side a sound at the screen's edge goes; 1 would silence the other ear.
inline constexpr double widestPan = 0.6;

/// The gains for a character at `position` on `screen`, by the sine and cosine law, under which
/// left^2 + right^2 = 1 everywhere and so the loudness does not change as the character moves. Beyond the
/// screen's edge is as the edge. The centre when the screen is empty or a number is not finite.
StereoGains stereoPan(Point position, const Rect& screen);

} // namespace FellowCore
