#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Cuts the bytes that arrive from the media helper into lines.
class NowPlayingLines {
public:
    /// How many bytes may wait for their line's end: covers travel in the lines, so these can be long.
    static constexpr std::size_t limit = 12000000;

    /// The lines that `data` completes, without their line feeds. When more than `limit` bytes wait, the
    /// lines in them too, all are dropped and there are no lines.
    std::vector<std::string> append(std::string_view data);
    /// The beginning of a line that has not ended yet.
    const std::string& pending() const { return pending_; }

private:
    std::string pending_;
};

} // namespace FellowCore
