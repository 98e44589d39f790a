#include "core/base/Text.h"
#include "fuzz/Require.h"

#include <cstdint>
#include <string>
#include <string_view>

using namespace FellowCore;

/// Whatever the bytes are, the text helpers agree with themselves.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t count = characterCount(text);
    require(characterPrefix(text, count) == text);
    require(characterCount(characterPrefix(text, count / 2)) == count / 2);
    require(trimmed(trimmed(text)) == trimmed(text));
    require(singleLine(singleLine(text)) == singleLine(text));
    require(folded(folded(text)) == folded(text));
    const std::string lower = lowercased(text);
    require(lowercased(lower) == lower);
    return 0;
}
