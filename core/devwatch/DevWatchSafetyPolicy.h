#pragma once

#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Why a process is never touched, whatever the user asks.
enum class DevWatchSafetyRefusal {
    protectedPID,
    anotherUser,
    incompleteIdentity, ///< not enough is known to be sure which process it is
    protectedPath,
    protectedProcess,
    selfProcess,
};

/// The name of the case: "protectedPID", ...
std::string_view rawValue(DevWatchSafetyRefusal refusal);

/// Where a path leads once every link in it is followed, as far as it exists; nothing when that cannot be
/// told.
using DevWatchLinkResolver = std::function<std::optional<std::string>(const std::string& path)>;

/// The file system's own answer.
std::optional<std::string> devWatchResolvedLinks(const std::string& path);

/// Which processes may be stopped at all.
struct DevWatchSafetyPolicy {
    std::uint32_t currentUserID = 0;
    std::int32_t selfPID = 0;
    std::optional<std::string> appExecutablePath = std::nullopt; ///< this program, links followed
    /// The processes this one descends from: the shell, the terminal and the session that it lives in.
    std::vector<DevWatchProcessIdentity> ancestors = {};
    DevWatchLinkResolver resolveLinks = devWatchResolvedLinks;

    /// The first reason that holds against stopping the process, in a fixed order; nothing when it may be
    /// stopped. Looks at the file system to follow links.
    std::optional<DevWatchSafetyRefusal> refusal(const DevWatchProcess& process) const;

private:
    std::optional<DevWatchSafetyRefusal> pathRefusal(const std::string& executablePath) const;
};

} // namespace FellowCore
