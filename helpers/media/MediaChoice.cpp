#include "helpers/media/MediaChoice.h"

#include "core/base/Text.h"

#include <algorithm>
#include <tuple>

namespace FellowMedia {

namespace {

bool hasTrack(const MediaPlayer& player) {
    return !FellowCore::trimmed(player.title).empty();
}

/// Whether the add-on tells only what `other` tells as well.
bool repeats(const MediaPlayer& addOn, const MediaPlayer& other) {
    const bool sameBrowser = !addOn.desktopEntry.empty() && addOn.desktopEntry == other.desktopEntry;
    const bool samePiece = addOn.title == other.title && addOn.artist == other.artist;
    return !other.isBrowserIntegration() && other.playback >= addOn.playback && hasTrack(other) &&
           (sameBrowser || samePiece);
}

auto rank(const MediaPlayer& player) {
    return std::tuple(player.isPlaying(), player.lastPlayed, player.playback);
}

} // namespace

const MediaPlayer* chosenPlayer(const std::vector<const MediaPlayer*>& players) {
    const MediaPlayer* chosen = nullptr;
    for (const MediaPlayer* player : players) {
        const bool counts =
            hasTrack(*player) && !(player->isBrowserIntegration() &&
                                   std::any_of(players.begin(), players.end(), [&](const MediaPlayer* other) {
                                       return repeats(*player, *other);
                                   }));
        if (counts && (!chosen || rank(*player) > rank(*chosen))) {
            chosen = player;
        }
    }
    return chosen;
}

} // namespace FellowMedia
