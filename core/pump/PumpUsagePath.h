#pragma once

#include "core/pump/PumpUsageJSON.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace FellowCore::PumpUsageJSON {

/// Where in a line a value stands, as far as it matters: one of the kept fields, one of the objects that hold
/// them, or nowhere. A path is what its joined text says, so the key "message.id" at the root and the key
/// "id" in "message" lead to the same place.
enum class Path : std::uint8_t {
    none,
    root,
    message,
    messageUsage,
    payload,
    payloadRateLimits,
    payloadRateLimitsPrimary,
    firstField, ///< this and the fourteen that follow are the fields, in the order of `Field`
};

constexpr bool isContainer(Path path) {
    return path != Path::none && path < Path::firstField;
}

constexpr std::optional<Field> fieldOf(Path path) {
    if (path < Path::firstField) {
        return std::nullopt;
    }
    return static_cast<Field>(static_cast<int>(path) - static_cast<int>(Path::firstField));
}

/// The place of a decoded key in a container; none for a key that leads nowhere.
Path pathBelow(Path container, std::string_view key);

} // namespace FellowCore::PumpUsageJSON
