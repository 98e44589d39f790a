#pragma once

#include "core/nowplaying/NowPlayingControls.h"
#include "core/nowplaying/NowPlayingTrack.h"

#include <QImage>

#include <optional>

namespace DeskSprites {

/// What is known of the music at one moment.
struct NowPlayingNews {
    enum class Following {
        starting, ///< nothing heard yet
        works,
        failed, ///< the helper does not run; it is started again
    };

    Following following = Following::starting;
    std::optional<FellowCore::NowPlayingTrack> track; ///< without the bytes of its artwork
    FellowCore::NowPlayingControls controls;
    QImage cover; ///< the track's artwork as `NowPlayingCover` makes it; null when there is none to show
};

} // namespace DeskSprites
