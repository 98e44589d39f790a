#include "core/nowplaying/NowPlayingCommand.h"

#include <array>

namespace FellowCore {

namespace {

// In the order of the cases.
constexpr std::array<std::string_view, 4> words{"play-pause", "next", "previous", "raise"};

} // namespace

std::string_view rawValue(NowPlayingCommand command) {
    return words.at(static_cast<std::size_t>(command));
}

std::optional<NowPlayingCommand> nowPlayingCommand(std::string_view word) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        if (words[index] == word) {
            return static_cast<NowPlayingCommand>(index);
        }
    }
    return std::nullopt;
}

} // namespace FellowCore
