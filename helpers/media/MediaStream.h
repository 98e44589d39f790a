#pragma once

#include "core/base/Json.h"
#include "helpers/media/MediaPlayer.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace FellowMedia {

/// Tells what is shown, line by line: first all of it, then only what changed.
class MediaStream {
public:
    /// The line that brings the reader up to date, with its line feed, or nothing when it is. `shown` may be
    /// null; `artwork` is base64, empty for none.
    std::optional<std::string> line(const MediaPlayer* shown, const std::string& artwork);

private:
    std::optional<FellowCore::Json> written_;
};

} // namespace FellowMedia
