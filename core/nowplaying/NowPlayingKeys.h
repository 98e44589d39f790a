#pragma once

namespace FellowCore::NowPlayingKeys {

/// The keys of the media stream: one JSON object a line, of which each carries a whole state or what changed
/// in it, null for what went away.
constexpr auto type = "type"; ///< always `data`
constexpr auto data = "data";
constexpr auto diff = "diff"; ///< whether the payload is only what changed
constexpr auto payload = "payload";

/// In the payload: the track.
constexpr auto title = "title";
constexpr auto artist = "artist";
constexpr auto bundleIdentifier = "bundleIdentifier";
constexpr auto playing = "playing";
constexpr auto artworkData = "artworkData"; ///< base64, with padding
constexpr auto contentItemIdentifier = "contentItemIdentifier";

/// In the payload: the player behind it.
constexpr auto displayName = "displayName";
constexpr auto canPlayPause = "canPlayPause";
constexpr auto canGoNext = "canGoNext";
constexpr auto canGoPrevious = "canGoPrevious";
constexpr auto canRaise = "canRaise";

} // namespace FellowCore::NowPlayingKeys
