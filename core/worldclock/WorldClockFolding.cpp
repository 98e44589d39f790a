#include "core/worldclock/WorldClockFolding.h"

#include "core/base/Text.h"

#include <algorithm>
#include <array>

namespace FellowCore {

namespace {

/// How many bytes the white space character takes that the text begins with; 0 when it begins with another.
/// Folding leaves no other kinds of white space than these.
std::size_t whiteSpaceAt(std::string_view text) {
    static constexpr std::array<std::string_view, 4> rare = {"\u0085", "\u1680", "\u2028", "\u2029"};
    if (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')) {
        return 1;
    }
    for (const std::string_view space : rare) {
        if (text.starts_with(space)) {
            return space.size();
        }
    }
    return 0;
}

} // namespace

std::string worldClockFolded(std::string_view text) {
    std::string spaced(text);
    std::ranges::replace(spaced, '_', ' ');
    const bool isAscii = std::ranges::all_of(spaced, [](char byte) { return (byte & 0x80) == 0; });
    return trimmed(isAscii ? lowercased(spaced) : folded(spaced));
}

std::vector<std::string_view> worldClockWords(std::string_view folded) {
    std::vector<std::string_view> words;
    std::size_t begin = 0;
    const auto endWord = [&](std::size_t end) {
        if (end > begin) {
            words.push_back(folded.substr(begin, end - begin));
        }
    };
    for (std::size_t at = 0; at < folded.size();) {
        const std::size_t space = whiteSpaceAt(folded.substr(at));
        if (space > 0) {
            endWord(at);
            begin = at + space;
        }
        at += std::max<std::size_t>(space, 1);
    }
    endWord(folded.size());
    return words;
}

} // namespace FellowCore
