#include "core/agents/PumpAgentFields.h"

#include <algorithm>

namespace FellowCore::PumpAgentFields {

namespace {

constexpr std::size_t maximumSessionBytes = 128;
constexpr std::size_t maximumApplicationBytes = 160;

constexpr bool isAsciiLetterOrDigit(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

bool consistsOf(std::string_view text, std::size_t maximumBytes, std::string_view marks) {
    return !text.empty() && text.size() <= maximumBytes && std::ranges::all_of(text, [marks](char byte) {
        return isAsciiLetterOrDigit(byte) || marks.find(byte) != std::string_view::npos;
    });
}

} // namespace

bool isSessionID(std::string_view text) {
    return consistsOf(text, maximumSessionBytes, "-_.:");
}

bool isApplicationID(std::string_view text) {
    return consistsOf(text, maximumApplicationBytes, "-_.") && text.find('.') != std::string_view::npos;
}

bool holdsControlCharacter(std::string_view text) {
    unsigned char before = 0;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        // U+0080 to U+009F are the bytes C2 80 to C2 9F.
        if (value < 0x20 || value == 0x7F || (before == 0xC2 && value >= 0x80 && value <= 0x9F)) {
            return true;
        }
        before = value;
    }
    return false;
}

} // namespace FellowCore::PumpAgentFields
