#include "core/focus/CharacterMotion.h"

namespace FellowCore::CharacterMotion {

double phaseLight(Seconds elapsed, bool reduced) {
    if (reduced || !(elapsed >= 0 && elapsed < phaseLightDuration)) {
        return litBrightness;
    }
    // The tiny addition puts a frame that falls on a step's edge into the step that begins there.
    const int step = static_cast<int>((elapsed + 0.000001) / flashStep);
    return step % 2 == 0 ? darkBrightness : litBrightness;
}

double completionLight(Seconds elapsed, bool reduced) {
    const bool dark = !reduced && elapsed >= flashStep && elapsed < completionLightDuration;
    return dark ? darkBrightness : litBrightness;
}

} // namespace FellowCore::CharacterMotion
