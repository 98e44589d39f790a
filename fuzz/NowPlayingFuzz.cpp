#include "core/nowplaying/NowPlayingControls.h"
#include "core/nowplaying/NowPlayingLines.h"
#include "core/nowplaying/NowPlayingParser.h"
#include "core/nowplaying/NowPlayingState.h"
#include "fuzz/Require.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

/// A line that fails changes nothing, one that does not leaves a state that can be shown.
void take(NowPlayingParser& parser, NowPlayingState& state, const std::string& line, MonotonicInstant at) {
    const Json before = parser.fields();
    try {
        const auto track = parser.consume(line);
        require(!track || !track->title.empty());
        state.update(track, true, at);
        require(!state.pose(at, false).empty());
        require(!state.bubble(at) || (state.track && !state.bubble(at)->empty()));
        NowPlayingControls::from(parser.fields());
    } catch (const JsonError&) {
        require(parser.fields() == before);
    } catch (const NowPlayingParser::ParseError&) {
        require(parser.fields() == before);
    }
}

} // namespace

// The first byte says in what pieces the rest arrives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t piece = data[0] + std::size_t{1};
    std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    NowPlayingLines lines;
    NowPlayingParser parser;
    NowPlayingState state;
    MonotonicInstant at;
    while (!rest.empty()) {
        for (const std::string& line : lines.append(rest.substr(0, piece))) {
            require(line.find('\n') == std::string::npos);
            take(parser, state, line, at);
            at = at + 1;
        }
        require(lines.pending().find('\n') == std::string::npos);
        rest.remove_prefix(std::min(piece, rest.size()));
    }
    return 0;
}
