#include "core/nowplaying/NowPlayingParser.h"

#include "core/base/Text.h"
#include "core/nowplaying/NowPlayingKeys.h"

#include <nlohmann/json.hpp>
#include <sodium.h>

namespace FellowCore {

namespace {

using Bytes = std::vector<std::uint8_t>;
using ParseError = NowPlayingParser::ParseError;

/// The value of `key` when it is a string.
const std::string* stringAt(const Json& fields, const char* key) {
    const auto found = fields.find(key);
    return found == fields.end() ? nullptr : found->get_ptr<const Json::string_t*>();
}

std::string textAt(const Json& fields, const char* key) {
    const std::string* found = stringAt(fields, key);
    return found ? *found : std::string();
}

/// A member of that type; throws `ParseError` when there is none, nor an object that could have it.
Json& member(Json& object, const char* key, Json::value_t type) {
    const auto found = object.find(key);
    if (found == object.end() || found->type() != type) {
        throw ParseError(ParseError::Kind::invalid);
    }
    return *found;
}

std::optional<Bytes> decoded(const std::string& base64) {
    Bytes bytes(base64.size() / 4 * 3 + 3);
    std::size_t size = 0;
    if (sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(), nullptr, &size, nullptr,
                          sodium_base64_VARIANT_ORIGINAL) != 0) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

} // namespace

NowPlayingParser::ParseError::ParseError(Kind kind)
    : std::runtime_error("not a line of the media stream"), kind_(kind) {}

NowPlayingParser::NowPlayingParser() : fields_(std::make_unique<Json>(Json::object())) {}
NowPlayingParser::~NowPlayingParser() = default;
NowPlayingParser::NowPlayingParser(NowPlayingParser&& other) noexcept = default;
NowPlayingParser& NowPlayingParser::operator=(NowPlayingParser&& other) noexcept = default;

std::optional<NowPlayingTrack> NowPlayingParser::consume(std::string_view line) {
    Json value = parseJson(line);
    if (value.is_null()) {
        return std::nullopt;
    }
    using Type = Json::value_t;
    if (member(value, NowPlayingKeys::type, Type::string) != NowPlayingKeys::data) {
        throw ParseError(ParseError::Kind::invalid);
    }
    Json& payload = member(value, NowPlayingKeys::payload, Type::object);
    if (!member(value, NowPlayingKeys::diff, Type::boolean).get<bool>()) {
        fields_->clear();
        artwork_.reset();
    }
    merge(payload);
    return track();
}

void NowPlayingParser::merge(Json& payload) {
    for (auto& [key, value] : payload.items()) {
        if (value.is_null()) {
            fields_->erase(key);
        } else {
            (*fields_)[key] = std::move(value);
        }
    }
    if (payload.contains(NowPlayingKeys::artworkData)) {
        const std::string* base64 = stringAt(*fields_, NowPlayingKeys::artworkData);
        artwork_ = base64 ? decoded(*base64) : std::nullopt;
    }
}

std::optional<NowPlayingTrack> NowPlayingParser::track() const {
    NowPlayingTrack track;
    track.title = trimmed(textAt(*fields_, NowPlayingKeys::title));
    if (track.title.empty()) {
        return std::nullopt;
    }
    track.artist = trimmed(textAt(*fields_, NowPlayingKeys::artist));
    track.bundleIdentifier = textAt(*fields_, NowPlayingKeys::bundleIdentifier);
    const auto playing = fields_->find(NowPlayingKeys::playing);
    track.playing = playing != fields_->end() && playing->is_boolean() && playing->get<bool>();
    track.artworkData = artwork_;
    if (const std::string* identifier = stringAt(*fields_, NowPlayingKeys::contentItemIdentifier)) {
        track.identifier = *identifier;
    }
    return track;
}

} // namespace FellowCore
