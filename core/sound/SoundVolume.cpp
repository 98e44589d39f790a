#include "core/sound/SoundVolume.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

double clampedVolume(double volume) {
    return std::isfinite(volume) ? std::clamp(volume, 0.0, 1.0) : 1.0;
}

double combinedVolume(double volume, double characterVolume) {
    return clampedVolume(volume) * clampedVolume(characterVolume);
}

} // namespace FellowCore
