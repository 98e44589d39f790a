#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchProcessIdentity.h"

#include <cstdint>
#include <string>

namespace FellowCore {

/// A running process as the lists show it. The texts are the system's bytes; whoever shows them makes them
/// one clean line first.
struct DevWatchProcess {
    DevWatchProcessIdentity identity;
    std::string name;
    std::string executablePath;
    std::string workingDirectory;

    /// How long it has been running, by the start that its identity tells.
    Seconds uptime(Instant at) const;

    friend bool operator==(const DevWatchProcess&, const DevWatchProcess&) = default;
};

/// A process that waits for connections on a TCP port.
struct DevWatchListener {
    DevWatchProcess process;
    std::uint16_t port = 0;

    friend bool operator==(const DevWatchListener&, const DevWatchListener&) = default;
};

/// The last component of a path, as the file system means it: nothing for a path that ends in a slash.
std::string devWatchLastComponent(const std::string& path);

} // namespace FellowCore
