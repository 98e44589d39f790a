#pragma once

#include "core/devwatch/DevWatchApp.h"
#include "core/devwatch/DevWatchOperations.h"
#include "platform/FrontmostApplication.h"
#include "platform/InstalledApplications.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// Tells which applications run by the windows in the session: all windows of a process are one application.
/// An application keeps its name for as long as it has windows, so that a list read again compares equal.
/// One thread at a time.
class DevWatchApplications {
public:
    /// Finds an installed application by its desktop-file id or by a window class.
    using Lookup = std::function<std::optional<Platform::InstalledApplication>(const std::string&)>;

    /// The applications of the user `uid`, without those of the process `selfPID`. `processes` must outlive
    /// this.
    DevWatchApplications(const FellowCore::DevWatchOperations& processes, std::uint32_t uid,
                         std::int32_t selfPID, Lookup lookup = Platform::installedApplication);

    /// The applications behind these windows, by name. Leaves out our own, the desktop and its panels,
    /// windows that tell no process, and processes that are gone or not the user's. Reads small files for an
    /// application that was not in the last list.
    std::vector<FellowCore::DevWatchApp> list(const std::vector<Platform::RunningApplication>& windows);

    /// Those of the windows that belong to the application; none when its process is not the same any more.
    std::vector<Platform::RunningApplication>
    windowsOf(const FellowCore::DevWatchApp& app,
              const std::vector<Platform::RunningApplication>& windows) const;

private:
    struct Known {
        FellowCore::DevWatchApp app;
        std::optional<std::string> executable; ///< a process may become another program
    };

    Known described(const FellowCore::DevWatchProcessIdentity& identity,
                    const Platform::RunningApplication& window,
                    const std::optional<std::string>& executable) const;

    const FellowCore::DevWatchOperations& processes_;
    std::uint32_t uid_;
    std::int32_t selfPID_;
    Lookup lookup_;
    std::map<FellowCore::DevWatchProcessIdentity, Known> known_;
};

} // namespace DeskSprites
