#include "core/ledger/MunshiLine.h"

#include "core/base/Text.h"

#include <array>

namespace FellowCore {

namespace {

/// The line breaks of Unicode (UAX #14, classes BK, CR, LF and NL), the pair first.
constexpr std::array<std::string_view, 8> lineBreaks{"\r\n", "\n",       "\r",           "\v",
                                                     "\f",   "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

/// How many bytes the line break takes with which the text begins; 0 when it begins with none.
std::size_t lineBreakAt(std::string_view text) {
    constexpr std::string_view firstBytes = "\r\n\v\f\xC2\xE2";
    if (text.empty() || firstBytes.find(text.front()) == std::string_view::npos) {
        return 0; // nearly always
    }
    for (const std::string_view lineBreak : lineBreaks) {
        if (text.starts_with(lineBreak)) {
            return lineBreak.size();
        }
    }
    return 0;
}

std::string withoutLineBreaks(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t length = lineBreakAt(text.substr(index));
        line += length > 0 ? ' ' : text[index];
        index += length > 0 ? length : 1;
    }
    return line;
}

} // namespace

std::optional<MunshiLine> MunshiLine::parse(std::string_view raw) {
    // However much was pasted, this holds the bullet and everything that can be kept.
    constexpr std::size_t enough = 2 * maximumBytes;
    const std::string whole = trimmed(raw);
    MunshiLine line{withoutLineBreaks(bytePrefix(whole, enough)), MunshiItem::Kind::task};
    // The whole first character is compared: a dash under a mark is a letter of somebody's, not a bullet.
    const std::string first = characterPrefix(line.text, 1);
    if (first == "-" || first == "\u2022") {
        line = {trimmed(std::string_view(line.text).substr(first.size())), MunshiItem::Kind::note};
    }
    line.text = bounded(line.text);
    return line.text.empty() ? std::nullopt : std::optional(line);
}

std::string MunshiLine::bounded(std::string_view text) {
    // Bytes that are no text grow when they are replaced, so the limit is held against the result too.
    const std::string line = wellFormed(withoutLineBreaks(bytePrefix(text, maximumBytes)));
    return characterPrefix(bytePrefix(line, maximumBytes), maximumCharacters);
}

std::vector<std::string> munshiLines(std::string_view text, std::size_t atMost) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t index = 0; index <= text.size() && lines.size() < atMost;) {
        const std::size_t length = lineBreakAt(text.substr(index));
        if (length == 0 && index < text.size()) {
            ++index;
            continue;
        }
        const std::string_view line = text.substr(begin, index - begin);
        if (!trimmed(line).empty()) {
            lines.emplace_back(line);
        }
        index += length > 0 ? length : 1;
        begin = index;
    }
    return lines;
}

} // namespace FellowCore
