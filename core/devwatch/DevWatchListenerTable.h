#pragma once

#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace FellowCore {

/// A process as a sample read it.
struct DevWatchSampledProcess {
    DevWatchProcess process;
    std::optional<std::uint64_t> cpuTimeNanoseconds;
    /// False only when its processor time shows that it has not run since the sample before. Whoever has not
    /// run has opened, received and closed nothing.
    bool mayHaveRun = true;
};

/// Knows which process holds which listening socket, and looks through as few descriptors as it can: that is
/// by far the dearest of all reads, and from one sample to the next hardly ever anything changes.
///
/// A process is looked through when it is new, when a descriptor it listened with is something else by now,
/// and, if it has run since it was looked through, every 32nd round, because a socket may also be handed on.
/// When a socket begins to listen, or nobody is known to hold one any more, all that have run are.
class DevWatchListenerTable {
public:
    /// One entry per process and port, in the order of `processes` and ascending by port. None when the
    /// sockets cannot be listed; what was known stays for the next round.
    std::vector<DevWatchListener> update(const DevWatchOperations& system,
                                         const std::vector<DevWatchSampledProcess>& processes);

private:
    struct Entry {
        std::vector<DevWatchSocketDescriptor> sockets; ///< also those that do not listen yet
        bool hasRunSince = false;                      ///< since it was looked through
    };
    struct Round;

    bool isNews(const Round& round) const;
    Entry known(const Round& round, const DevWatchSampledProcess& sampled) const;
    std::vector<DevWatchListener> listeners(const std::vector<DevWatchSampledProcess>& processes) const;

    std::unordered_map<DevWatchProcessIdentity, Entry> held_;
    std::unordered_map<std::uint64_t, std::uint16_t> ports_; ///< of the listening sockets
    std::unordered_set<std::uint64_t> strangers_;            ///< those that none of the processes holds
    std::uint32_t round_ = 0;
};

} // namespace FellowCore
