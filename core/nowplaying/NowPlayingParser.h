#pragma once

#include "core/base/Json.h"
#include "core/nowplaying/NowPlayingTrack.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Follows the media stream: puts what changed to what was known, and makes a track of it.
class NowPlayingParser {
public:
    class ParseError : public std::runtime_error {
    public:
        enum class Kind { invalid }; ///< JSON, but no line of the stream

        explicit ParseError(Kind kind);
        Kind kind() const { return kind_; }

    private:
        Kind kind_;
    };

    NowPlayingParser();
    ~NowPlayingParser();
    NowPlayingParser(NowPlayingParser&& other) noexcept;
    NowPlayingParser& operator=(NowPlayingParser&& other) noexcept;

    /// Takes one line; the track after it, or nothing when there is none, or the line is null. Throws
    /// `JsonError` for what is not JSON and `ParseError` for what is no line of the stream; what was known
    /// stays then, and the next line may be taken. Keys that mean nothing here are kept in `fields`.
    std::optional<NowPlayingTrack> consume(std::string_view line);
    /// The state that the lines so far add up to: always an object, see `NowPlayingKeys`.
    const Json& fields() const { return *fields_; }

private:
    void merge(Json& payload);
    std::optional<NowPlayingTrack> track() const;

    std::unique_ptr<Json> fields_;
    /// Decoded when it comes, not again for each line that changes something else.
    std::optional<std::vector<std::uint8_t>> artwork_;
};

} // namespace FellowCore
