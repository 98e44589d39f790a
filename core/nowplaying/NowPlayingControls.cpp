#include "core/nowplaying/NowPlayingControls.h"

#include "core/base/Text.h"
#include "core/nowplaying/NowPlayingKeys.h"

#include <nlohmann/json.hpp>

namespace FellowCore {

NowPlayingControls NowPlayingControls::from(const Json& fields) {
    const auto can = [&](const char* key) {
        const auto found = fields.find(key);
        return found != fields.end() && found->is_boolean() && found->get<bool>();
    };
    NowPlayingControls controls{.displayName = std::nullopt,
                                .canPlayPause = can(NowPlayingKeys::canPlayPause),
                                .canGoNext = can(NowPlayingKeys::canGoNext),
                                .canGoPrevious = can(NowPlayingKeys::canGoPrevious),
                                .canRaise = can(NowPlayingKeys::canRaise)};
    const auto name = fields.find(NowPlayingKeys::displayName);
    if (name != fields.end() && name->is_string()) {
        const std::string text = trimmed(name->get_ref<const std::string&>());
        controls.displayName = text.empty() ? std::nullopt : std::optional(text);
    }
    return controls;
}

} // namespace FellowCore
