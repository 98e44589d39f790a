#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace FellowCore {

/// What a media player plays or has paused. Texts are as the player gave them: whoever shows them cleans
/// them.
struct NowPlayingTrack {
    std::string title;            ///< never only white space
    std::string artist;           ///< empty when not known
    std::string bundleIdentifier; ///< of the application; on Linux the id of its desktop entry; may be empty
    bool playing = false;
    std::optional<std::vector<std::uint8_t>> artworkData; ///< an image file, of whatever kind
    std::optional<std::string> identifier;                ///< the player's own, of this one item

    /// Whether this is another piece than `other`. Pausing, going on and a late cover make no other piece,
    /// nor does an identifier that only one of the two has.
    bool isDifferent(const std::optional<NowPlayingTrack>& other) const;

    friend bool operator==(const NowPlayingTrack&, const NowPlayingTrack&) = default;
};

} // namespace FellowCore
