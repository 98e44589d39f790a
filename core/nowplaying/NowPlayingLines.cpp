#include "core/nowplaying/NowPlayingLines.h"

namespace FellowCore {

std::vector<std::string> NowPlayingLines::append(std::string_view data) {
    // What waited already held no line feed, so only the news are searched.
    const std::size_t searched = pending_.size();
    if (data.size() > limit || searched + data.size() > limit) {
        pending_ = {};
        return {};
    }
    pending_ += data;
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (auto end = pending_.find('\n', searched); end != std::string::npos;
         end = pending_.find('\n', start)) {
        lines.emplace_back(pending_, start, end - start);
        start = end + 1;
    }
    if (start > 0) {
        // A copy, so that the room a large cover took is not kept.
        pending_ = pending_.substr(start);
    }
    return lines;
}

} // namespace FellowCore
