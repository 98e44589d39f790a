#include "helpers/media/MediaPlayer.h"

namespace FellowMedia {

namespace {

constexpr std::string_view browserIntegration = "plasma-browser-integration";
constexpr std::string_view proxy = "playerctld";

/// "vlc.instance123" and "firefox.instance_1_84" without what tells one running program from another.
std::string withoutInstance(const std::string& name) {
    const auto dot = name.rfind(".instance");
    const bool isInstance =
        dot != std::string::npos && dot > 0 &&
        name.find_first_not_of("0123456789_", dot + std::string_view(".instance").size()) ==
            std::string::npos;
    return isInstance ? name.substr(0, dot) : name;
}

} // namespace

std::string MediaPlayer::bundleIdentifier() const {
    if (!desktopEntry.empty() || names.empty()) {
        return desktopEntry;
    }
    return withoutInstance(*names.begin());
}

bool MediaPlayer::isBrowserIntegration() const {
    return !names.empty() && withoutInstance(*names.begin()) == browserIntegration;
}

std::optional<const char*> methodFor(const MediaPlayer& player, FellowCore::NowPlayingCommand command) {
    using enum FellowCore::NowPlayingCommand;
    const auto when = [](bool can, const char* method) { return can ? std::optional(method) : std::nullopt; };
    switch (command) {
    case playPause:
        // A player that cannot pause may refuse to be toggled even when it could play.
        return when(player.canPlayPause(), player.canPause ? "PlayPause" : "Play");
    case next:
        return when(player.canControl && player.canGoNext, "Next");
    case previous:
        return when(player.canControl && player.canGoPrevious, "Previous");
    case raise:
        return when(player.canRaise, "Raise");
    }
    return std::nullopt;
}

bool isProxy(std::string_view name) {
    return name == proxy;
}

} // namespace FellowMedia
