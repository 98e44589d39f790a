#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// A 128-bit identity (RFC 9562).
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", in capitals.
    std::string text() const;
    /// Reads capital and small letters; nothing for any other form.
    static std::optional<Uuid> fromText(std::string_view text);

    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

/// Where fresh identities come from; a test gives its own.
using UuidSource = std::function<Uuid()>;

/// A fresh identity from the system's randomness (version 4).
Uuid randomUuid();

} // namespace FellowCore
