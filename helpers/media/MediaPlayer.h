#pragma once

#include "core/nowplaying/NowPlayingCommand.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace FellowMedia {

enum class Playback { stopped, paused, playing };

/// What one media player says about itself: MPRIS 2.2, the interfaces org.mpris.MediaPlayer2 and
/// org.mpris.MediaPlayer2.Player. Texts are as it gave them, cut where nobody would read on.
struct MediaPlayer {
    std::set<std::string> names; ///< on the bus, without the prefix: "mpv", "vlc.instance7"; several are one
    std::string identity;        ///< its own name for itself; may be empty
    std::string desktopEntry;    ///< the id of its desktop entry; may be empty
    bool canRaise = false;

    Playback playback = Playback::stopped;
    bool canControl = true;
    bool canPlay = false;
    bool canPause = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
    std::string title; ///< empty until its metadata come
    std::string artist;
    std::string identifier;
    std::string artworkURL;

    /// Counts up whenever any player begins or ends playing; the greatest played last. 0 is never.
    std::uint64_t lastPlayed = 0;

    bool isPlaying() const { return playback == Playback::playing; }
    /// The id of its desktop entry, else its name on the bus without the number of the instance.
    std::string bundleIdentifier() const;
    /// A browser's add-on, which tells of what the browser itself may tell of, too.
    bool isBrowserIntegration() const;
    /// Whether pressing the button does something: pausing, or playing on.
    bool canPlayPause() const { return canControl && (canPause || (canPlay && !isPlaying())); }

    friend bool operator==(const MediaPlayer&, const MediaPlayer&) = default;
};

/// The method that carries out a command, or nothing when the player says that it cannot.
std::optional<const char*> methodFor(const MediaPlayer& player, FellowCore::NowPlayingCommand command);

/// Whether that name on the bus (without the prefix) belongs to a program that only passes on what another
/// player says.
bool isProxy(std::string_view name);

} // namespace FellowMedia
