#pragma once

#include "core/nowplaying/NowPlayingState.h"

#include <optional>

namespace DeskSprites {

/// How long from `at` until Thumka's pose is another, in seconds, above 0; nothing when it stays as long as
/// nothing else happens.
std::optional<FellowCore::Seconds> untilNextPose(const FellowCore::NowPlayingState& state,
                                                 FellowCore::MonotonicInstant at, bool reduceMotion);

} // namespace DeskSprites
