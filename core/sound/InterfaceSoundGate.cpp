#include "core/sound/InterfaceSoundGate.h"

#include <cmath>

namespace FellowCore {

bool InterfaceSoundGate::permits(InterfaceSoundCue cue, bool enabled, bool guidanceActive,
                                 bool characterMuted, Seconds at) {
    if (!std::isfinite(at) || !enabled || guidanceActive || characterMuted)
        return false;
    const bool spaced = !lastPlayed || at < *lastPlayed || at - *lastPlayed >= spacing;
    if (!spaced && cue != InterfaceSoundCue::miraComplete)
        return false;
    lastPlayed = at;
    return true;
}

} // namespace FellowCore
