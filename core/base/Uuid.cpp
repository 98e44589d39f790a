#include "core/base/Uuid.h"

#include <random>

namespace FellowCore {

namespace {

constexpr std::size_t textLength = 36;

bool isDashAt(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<std::uint8_t>(digit - '0');
    }
    const char small = static_cast<char>(digit | 0x20);
    if (small >= 'a' && small <= 'f') {
        return static_cast<std::uint8_t>(small - 'a' + 10);
    }
    return std::nullopt;
}

} // namespace

std::string Uuid::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : bytes) {
        if (isDashAt(text.size())) {
            text += '-';
        }
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

std::optional<Uuid> Uuid::fromText(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid uuid;
    std::size_t digits = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (isDashAt(position)) {
            if (text[position] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const auto digit = hexDigit(text[position]);
        if (!digit) {
            return std::nullopt;
        }
        std::uint8_t& byte = uuid.bytes[digits / 2];
        byte = static_cast<std::uint8_t>(byte << 4U | *digit);
        ++digits;
    }
    return uuid;
}

Uuid randomUuid() {
    std::random_device random;
    Uuid uuid;
    for (std::size_t index = 0; index < uuid.bytes.size(); index += 4) {
        const std::uint32_t word = random();
        for (std::size_t byte = 0; byte < 4; ++byte) {
            uuid.bytes[index + byte] = static_cast<std::uint8_t>(word >> (8 * byte));
        }
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0FU) | 0x40U); // version 4, random
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3FU) | 0x80U); // the variant of the RFC
    return uuid;
}

} // namespace FellowCore
