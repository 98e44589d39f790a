#pragma once

#include "core/devwatch/DevWatchProcessIdentity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// A running application: a process with windows of its own in the session.
struct DevWatchApp {
    DevWatchProcessIdentity identity;
    std::string name;                            ///< as the user knows it
    std::optional<std::string> bundleIdentifier; ///< on Linux the id of its desktop entry
    std::string bundlePath;                      ///< on Linux the path of its desktop entry or its program
    bool regular = false;                        ///< has windows that a person works in
    bool terminated = false;

    /// The applications to list: the user's own, named, not this program and not the desktop itself, each
    /// process once, by name without regard to case.
    static std::vector<DevWatchApp> filtered(const std::vector<DevWatchApp>& running,
                                             std::uint32_t currentUID, std::int32_t selfPID,
                                             const std::optional<std::string>& selfBundleIdentifier);

    friend bool operator==(const DevWatchApp&, const DevWatchApp&) = default;
};

} // namespace FellowCore
