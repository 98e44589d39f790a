#pragma once

#include "core/devwatch/DevWatchOperations.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The texts of /proc, as proc(5) describes them.
namespace Platform::ProcText {

/// What is wanted of /proc/PID/stat.
struct Stat {
    std::int32_t pid = 0;
    std::string command; ///< at most 15 bytes, of any kind
    char state = 0;
    std::int32_t parent = 0;
    std::uint64_t startTicks = 0; ///< since the system was booted
};

std::optional<Stat> stat(std::string_view text);
/// The line "Uid:" of /proc/PID/status.
std::optional<FellowCore::DevWatchProcessOwners> owners(std::string_view text);
/// The first line of /proc/stat. Waiting for a disk is idle; time that other guests of the same machine took
/// is neither.
std::optional<FellowCore::DevWatchSystemCPUSample> systemTicks(std::string_view text);
/// The number in the target of a descriptor's link, "socket:[4026]"; 0 when it is no socket.
std::uint64_t socket(std::string_view target);

} // namespace Platform::ProcText
