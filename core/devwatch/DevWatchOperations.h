#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchCPUCalculator.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace FellowCore {

/// What the system's process table says about one process in a single read.
struct DevWatchProcessRecord {
    std::int32_t pid = 0;
    std::int32_t parent = 0; ///< 0 when there is none
    std::uint32_t uid = 0;   ///< effective owner
    bool zombie = false;
    std::string name;               ///< the long name; empty when the system has none
    std::string command;            ///< the short name
    std::uint64_t startSeconds = 0; ///< since 1970-01-01 UTC; the same for as long as the process lives
    std::uint64_t startMicroseconds = 0;
};

/// Who a process acts for.
struct DevWatchProcessOwners {
    std::uint32_t real = 0;
    std::uint32_t effective = 0;
};

/// A TCP socket that waits for connections, by the number under which descriptors refer to it. Both address
/// families count.
struct DevWatchListeningSocket {
    std::uint64_t socket = 0;
    std::uint16_t port = 0; ///< host order

    friend bool operator==(const DevWatchListeningSocket&, const DevWatchListeningSocket&) = default;
};

/// A descriptor of a process that is a socket of any kind.
struct DevWatchSocketDescriptor {
    std::int32_t descriptor = 0;
    std::uint64_t socket = 0;

    friend bool operator==(const DevWatchSocketDescriptor&, const DevWatchSocketDescriptor&) = default;
};

/// Everything the dev watch reads from an operating system. The only door to it, so that the logic is tested
/// without one and a port supplies one class.
///
/// Every operation may find its process gone, belonging to somebody else or unreadable, and answers nothing
/// then; none throws. All may be called from several threads at once. They block for as long as the system
/// takes to look something up.
class DevWatchOperations {
public:
    virtual ~DevWatchOperations() = default;

    /// A clock that goes on while the machine sleeps, so that a sleep shows as a gap.
    virtual MonotonicInstant now() const = 0;
    /// The numbers of a user's processes; nothing when the table cannot be listed.
    virtual std::optional<std::vector<std::int32_t>> pids(std::uint32_t uid) const = 0;
    virtual std::optional<DevWatchProcessRecord> record(std::int32_t pid) const = 0;
    virtual std::optional<DevWatchProcessOwners> owners(std::int32_t pid) const = 0;
    /// Absolute, and complete or nothing.
    virtual std::optional<std::string> executablePath(std::int32_t pid) const = 0;
    virtual std::optional<std::string> workingDirectory(std::int32_t pid) const = 0;
    /// User and system time of all threads, those that have ended too.
    virtual std::optional<std::uint64_t> cpuTimeNanoseconds(std::int32_t pid) const = 0;
    /// All sockets of the machine that listen; nothing when they cannot be listed.
    virtual std::optional<std::vector<DevWatchListeningSocket>> listeningSockets() const = 0;
    /// A process's descriptors that are sockets; none when they may not be read.
    virtual std::vector<DevWatchSocketDescriptor> socketDescriptors(std::int32_t pid) const = 0;
    /// The socket behind one descriptor, 0 when it is none.
    virtual std::uint64_t socketBehind(std::int32_t pid, std::int32_t descriptor) const = 0;
    virtual std::optional<DevWatchSystemCPUSample> systemTicks() const = 0;
};

} // namespace FellowCore
