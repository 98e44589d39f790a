#pragma once

#include "helpers/media/MediaPlayer.h"

#include <vector>

namespace FellowMedia {

/// The player to show, or null when there is none with something to show: one that plays before one that has
/// played, and that before all others; of two alike the one that began or ended playing later, then the
/// paused one, then the first. A browser's add-on counts not at all while the browser, or anyone with the
/// same piece, is doing as much.
const MediaPlayer* chosenPlayer(const std::vector<const MediaPlayer*>& players);

} // namespace FellowMedia
