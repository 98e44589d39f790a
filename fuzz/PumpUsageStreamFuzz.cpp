#include "core/pump/PumpUsageStream.h"
#include "fuzz/Require.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

using FellowCore::PumpUsageJSON::Stream;

namespace {

bool isWhole(Stream stream) {
    stream.finishNumber();
    return stream.isComplete();
}

/// Whether the bytes that a general parser, which minds more, takes for an object are taken for one here too;
/// but for what is nested too deeply, and for what that parser alone lets pass.
bool mayDiffer(const std::string& line) {
    const auto depth = [&] {
        int deepest = 0;
        int now = 0;
        for (const char byte : line) {
            now += byte == '{' || byte == '[' ? 1 : byte == '}' || byte == ']' ? -1 : 0;
            deepest = std::max(deepest, now);
        }
        return deepest;
    };
    return line.starts_with('\xEF') || line.find('\0') != std::string::npos ||
           line.find('\n') != std::string::npos || depth() > static_cast<int>(Stream::maximumDepth);
}

} // namespace

/// The first byte says where the rest is cut. However it is cut, the stream comes to the same; and it takes
/// every object that a general parser takes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string line(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t cut = line.empty() ? 0 : data[0] * line.size() / 255;
    Stream byteWise;
    for (const char byte : line) {
        byteWise.accept(static_cast<std::uint8_t>(byte));
    }
    Stream whole;
    whole.accept(line);
    Stream halves;
    halves.accept(std::string_view(line).substr(0, cut));
    halves.accept(std::string_view(line).substr(cut));
    require(whole == byteWise);
    require(halves == byteWise);
    if (!mayDiffer(line)) {
        const nlohmann::json document = nlohmann::json::parse(line, nullptr, false);
        require(!document.is_object() || isWhole(whole));
    }
    Stream again = whole;
    again.reset();
    require(again == Stream());
    return 0;
}
