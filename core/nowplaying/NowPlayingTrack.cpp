#include "core/nowplaying/NowPlayingTrack.h"

namespace FellowCore {

bool NowPlayingTrack::isDifferent(const std::optional<NowPlayingTrack>& other) const {
    if (!other || artist != other->artist || title != other->title) {
        return true;
    }
    const bool otherItem = identifier && other->identifier && *identifier != *other->identifier;
    const bool otherSource = !bundleIdentifier.empty() && !other->bundleIdentifier.empty() &&
                             bundleIdentifier != other->bundleIdentifier;
    return otherItem || otherSource;
}

} // namespace FellowCore
