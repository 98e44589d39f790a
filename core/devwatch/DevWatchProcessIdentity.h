#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace FellowCore {

/// Which process is meant. A number is used again once its process is gone; number, owner and start together
/// are not.
struct DevWatchProcessIdentity {
    std::int32_t pid = 0;
    std::uint32_t uid = 0;
    std::uint64_t startedAtMicroseconds = 0; ///< since 1970-01-01 UTC; 0 when it is not known

    /// By number, then owner, then start.
    friend auto operator<=>(const DevWatchProcessIdentity&, const DevWatchProcessIdentity&) = default;
};

/// Numbers below this belong to the system: nothing reads, shows or touches them.
inline constexpr std::int32_t devWatchLowestPid = 100;

} // namespace FellowCore

template <>
struct std::hash<FellowCore::DevWatchProcessIdentity> {
    std::size_t operator()(const FellowCore::DevWatchProcessIdentity& identity) const noexcept {
        const std::uint64_t number = static_cast<std::uint32_t>(identity.pid);
        return std::hash<std::uint64_t>{}(identity.startedAtMicroseconds ^ (number << 32) ^ identity.uid);
    }
};
