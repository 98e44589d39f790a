#pragma once

#include <cstddef>
#include <string_view>

namespace FellowCore {

/// How deep a JSON document may be nested, in objects and lists.
constexpr int maximumJsonDepth = 64;

/// Whether a document is nested no deeper than `maximumJsonDepth`, told before anything is built: what is
/// built must later be copied and written, which recurses. Up to the first fault this sees the same strings
/// and brackets as a parser, which refuses what follows a fault. Needs no library, for the static helper.
constexpr bool isShallowJson(std::string_view text) {
    int depth = 0;
    bool inString = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char byte = text[index];
        if (inString) {
            index += byte == '\\' ? 1 : 0;
            inString = byte != '"';
        } else if (byte == '"') {
            inString = true;
        } else if (byte == '{' || byte == '[') {
            if (++depth > maximumJsonDepth) {
                return false;
            }
        } else if (byte == '}' || byte == ']') {
            --depth;
        }
    }
    return true;
}

} // namespace FellowCore
