#pragma once

#include <optional>
#include <string_view>

namespace FellowCore {

/// What the shown player can be told: one word a line on the media helper's standard input.
enum class NowPlayingCommand { playPause, next, previous, raise };

/// "play-pause", "next", "previous", "raise".
std::string_view rawValue(NowPlayingCommand command);
/// The command of that word; nothing for any other.
std::optional<NowPlayingCommand> nowPlayingCommand(std::string_view word);

} // namespace FellowCore
