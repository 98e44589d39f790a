#include "core/containers/DevWatchHTTP.h"
#include "core/containers/DevWatchHTTPFailure.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace FellowCore;

namespace {

constexpr std::size_t limit = 4096;

// Whatever came is an answer within its bounds or a refusal.
void parseAnything(std::string_view bytes) {
    try {
        const auto response = DevWatchHTTP::parse(bytes, limit);
        require(response.status >= 100 && response.status <= 599);
        require(response.body.size() <= std::min(limit, bytes.size()));
        for (const auto& [name, value] : response.headers) {
            require(!name.empty() && name.find_first_of(" \t\r\n:") == std::string::npos);
            require(value.empty() || (value.front() != ' ' && value.back() != ' '));
        }
    } catch (const DevWatchHTTPFailure&) {
        // A refusal is an answer.
    }
}

// However a body is cut into chunks, it comes out whole; the first byte of each piece says how long it is.
void chunkAndJoin(std::string_view body) {
    std::string chunked;
    for (auto rest = body; !rest.empty();) {
        const auto piece = rest.substr(0, 1 + static_cast<unsigned char>(rest.front()) % 40);
        char size[16];
        std::snprintf(size, sizeof size, "%zX;x\r\n", piece.size());
        chunked.append(size).append(piece).append("\r\n");
        rest.remove_prefix(piece.size());
    }
    require(DevWatchHTTP::dechunked(chunked + "0\r\n\r\n", body.size()) == body);
    try {
        DevWatchHTTP::dechunked(chunked, body.size());
        std::abort(); // without its last chunk
    } catch (const DevWatchHTTPFailure& failure) {
        require(failure.kind() == DevWatchHTTPFailure::Kind::malformed);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    parseAnything(bytes);
    parseAnything("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(bytes));
    chunkAndJoin(bytes);
    return 0;
}
