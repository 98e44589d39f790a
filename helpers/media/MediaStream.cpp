#include "helpers/media/MediaStream.h"

#include "core/nowplaying/NowPlayingKeys.h"

#include <utility>

namespace FellowMedia {

namespace {

using FellowCore::Json;
namespace Keys = FellowCore::NowPlayingKeys;

Json payload(const MediaPlayer* shown, const std::string& artwork) {
    Json state = Json::object();
    if (!shown) {
        return state;
    }
    const auto put = [&](const char* key, const std::string& text) {
        if (!text.empty()) {
            state[key] = text;
        }
    };
    put(Keys::title, shown->title);
    put(Keys::artist, shown->artist);
    put(Keys::bundleIdentifier, shown->bundleIdentifier());
    put(Keys::displayName, shown->identity);
    put(Keys::artworkData, artwork);
    // An add-on has numbers of its own: the same piece must not look like another when the browser takes
    // over.
    put(Keys::contentItemIdentifier, shown->isBrowserIntegration() ? std::string() : shown->identifier);
    state[Keys::playing] = shown->isPlaying();
    state[Keys::canPlayPause] = shown->canPlayPause();
    state[Keys::canGoNext] = shown->canControl && shown->canGoNext;
    state[Keys::canGoPrevious] = shown->canControl && shown->canGoPrevious;
    state[Keys::canRaise] = shown->canRaise;
    return state;
}

/// What makes `before` into `after`, null for what went away.
Json difference(const Json& before, const Json& after) {
    Json changes = Json::object();
    for (const auto& [key, value] : after.items()) {
        const auto old = before.find(key);
        if (old == before.end() || *old != value) {
            changes[key] = value;
        }
    }
    for (const auto& [key, value] : before.items()) {
        if (!after.contains(key)) {
            changes[key] = nullptr;
        }
    }
    return changes;
}

} // namespace

std::optional<std::string> MediaStream::line(const MediaPlayer* shown, const std::string& artwork) {
    Json state = payload(shown, artwork);
    const bool diff = written_.has_value();
    Json news = diff ? difference(*written_, state) : state;
    if (diff && news.empty()) {
        return std::nullopt;
    }
    written_ = std::move(state);
    Json line = {{Keys::type, Keys::data}, {Keys::diff, diff}};
    line[Keys::payload] = std::move(news);
    return FellowCore::jsonText(line, FellowCore::JsonStyle::plain) + "\n";
}

} // namespace FellowMedia
