#pragma once

#include "core/base/Instant.h"
#include "core/nowplaying/NowPlayingTrack.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What Thumka makes of what plays: whether she dances, stands or dozes, in which pose, and what she says.
/// All times are of one clock; only differences matter, and the phase of the dance.
struct NowPlayingState {
    enum class Mode { idle, dancing, dozing };

    static constexpr Seconds dozesAfter = 300;
    static constexpr Seconds bubbleTime = 3;
    static constexpr double dancePosesPerSecond = 2;
    static constexpr double breathsPerSecond = 0.5; ///< changes of pose, so a breath in and out takes 4 s

    std::optional<NowPlayingTrack> track;
    bool available = false;      ///< whether media can be followed at all
    MonotonicInstant quietSince; ///< the last moment known at which something played; start it at the present
    std::optional<std::string> announcement; ///< the title of the last piece that began
    MonotonicInstant announcedAt;

    /// Takes what there is to play from `at` on, and announces it when it is another piece.
    void update(std::optional<NowPlayingTrack> newTrack, bool isAvailable, MonotonicInstant at);
    Mode mode(MonotonicInstant at) const;
    /// What the bubble says, if anything.
    std::optional<std::string> bubble(MonotonicInstant at) const;
    /// The name of the art to show.
    std::string_view pose(MonotonicInstant at, bool reduceMotion) const;
};

} // namespace FellowCore
