#include "core/containers/DevWatchHTTP.h"

#include "core/base/Text.h"
#include "core/containers/DevWatchHTTPFailure.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

namespace FellowCore::DevWatchHTTP {

namespace {

using Kind = DevWatchHTTPFailure::Kind;

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view blankLine = "\r\n\r\n";

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw DevWatchHTTPFailure(Kind::malformed, otherwise);
    }
}

void requireRoom(bool holds) {
    if (!holds) {
        throw DevWatchHTTPFailure(Kind::tooLarge, "The answer's body is too large.");
    }
}

/// Cuts a line and its end off the front of a text; nothing when it does not end within `headLimit` bytes.
std::optional<std::string_view> takeLine(std::string_view& rest) {
    const auto end = rest.substr(0, headLimit + lineEnd.size()).find(lineEnd);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto line = rest.substr(0, end);
    rest.remove_prefix(end + lineEnd.size());
    return line;
}

bool isDecimalDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isHexadecimalDigit(char byte) {
    return isDecimalDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

/// The value of digits of that base, the largest there is for one that does not fit; nothing when there are
/// none or anything else stands among them.
std::optional<std::size_t> number(std::string_view digits, int base) {
    if (digits.empty() || !std::ranges::all_of(digits, base == 16 ? isHexadecimalDigit : isDecimalDigit)) {
        return std::nullopt;
    }
    std::size_t value = 0;
    const auto end = digits.data() + digits.size();
    return std::from_chars(digits.data(), end, value, base).ec == std::errc() ? value : SIZE_MAX;
}

int parseStatus(std::string_view line) {
    require(line.starts_with("HTTP/1."), "The answer is not HTTP/1.");
    line.remove_prefix(std::min(line.find(' '), line.size()));
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto status = number(line.substr(0, line.find(' ')), 10);
    require(status && *status >= 100 && *status <= 599, "The answer has no status.");
    return static_cast<int>(*status);
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// A blank in or before a name is where readers of HTTP disagree about what a line means (RFC 9112, 5.1).
bool isName(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](char byte) { return byte > ' ' && byte < '\x7F'; });
}

DevWatchHTTPResponse parseHead(std::string_view head) {
    require(wellFormed(head) == head, "The answer's head is not UTF-8.");
    DevWatchHTTPResponse response;
    bool first = true;
    for (std::optional<std::string_view> line; (line = takeLine(head)); first = false) {
        if (first) {
            response.status = parseStatus(*line);
            continue;
        }
        const auto colon = line->find(':');
        require(colon != std::string_view::npos && isName(line->substr(0, colon)),
                "The answer's head has a line that is no header.");
        const bool added =
            response.headers
                .emplace(lowercased(line->substr(0, colon)), withoutBlanks(line->substr(colon + 1)))
                .second;
        require(added, "The answer's head has a header twice.");
    }
    return response;
}

std::string bodyOf(const DevWatchHTTPResponse& response, std::string_view rest, std::size_t maxBytes) {
    const auto coding = response.headers.find("transfer-encoding");
    const auto length = response.headers.find("content-length");
    if (coding != response.headers.end()) {
        require(lowercased(coding->second) == "chunked", "The answer is coded in an unknown way.");
        require(length == response.headers.end(), "The answer's length is said in two ways.");
        return dechunked(rest, maxBytes);
    }
    if (length != response.headers.end()) {
        const auto bytes = number(length->second, 10);
        require(bytes && *bytes <= rest.size(), "The answer is not as long as it says.");
        rest = rest.substr(0, *bytes);
    }
    requireRoom(rest.size() <= maxBytes);
    return std::string(rest);
}

} // namespace

DevWatchHTTPResponse parse(std::string_view bytes, std::size_t maxBytes) {
    const auto end = bytes.substr(0, headLimit + blankLine.size()).find(blankLine);
    require(end != std::string_view::npos, "The answer's head does not end.");
    auto response = parseHead(bytes.substr(0, end + lineEnd.size()));
    response.body = bodyOf(response, bytes.substr(end + blankLine.size()), maxBytes);
    return response;
}

std::string dechunked(std::string_view bytes, std::size_t maxBytes) {
    std::string body;
    for (;;) {
        const auto line = takeLine(bytes);
        require(line.has_value(), "The answer has a chunk without a size.");
        const auto size = number(line->substr(0, line->find(';')), 16);
        require(size.has_value(), "The answer has a chunk whose size is no number.");
        if (*size == 0) {
            break;
        }
        requireRoom(*size <= maxBytes - body.size());
        require(*size <= bytes.size(), "The answer ends inside a chunk.");
        body += bytes.substr(0, *size);
        bytes.remove_prefix(*size);
        require(bytes.starts_with(lineEnd), "The answer has a chunk that is longer than it says.");
        bytes.remove_prefix(lineEnd.size());
    }
    const auto trailer = bytes.substr(0, headLimit + blankLine.size());
    require(trailer.starts_with(lineEnd) || trailer.find(blankLine) != std::string_view::npos,
            "The answer's last chunk does not end.");
    return body;
}

} // namespace FellowCore::DevWatchHTTP
