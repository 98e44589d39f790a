#pragma once

#include "core/devwatch/DevWatchCPUCalculator.h"
#include "core/devwatch/DevWatchListenerTable.h"
#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"
#include "core/devwatch/DevWatchSnapshot.h"

#include <cstdint>
#include <optional>
#include <set>
#include <unordered_map>

namespace FellowCore {

/// Takes snapshots of the user's processes: who uses the processor, who listens on a TCP port, how busy the
/// machine is. What vanishes meanwhile is left out; it never throws for what the system does.
///
/// `sample` belongs to one thread at a time. `process` and `listeningPorts` keep nothing and may be asked
/// from another one meanwhile, directly before a signal.
class DevWatchSampler {
public:
    /// `system` must outlive the sampler.
    DevWatchSampler(const DevWatchOperations& system, DevWatchSafetyPolicy policy);

    /// Processor use is measured since the sample before, so a process shows among the usages from the second
    /// one that sees it. This program is never listed. Blocks for some milliseconds.
    ///
    /// A process whose processor time stands still has not run, so that it is still what it was; of such a
    /// one nothing else is read, but for every 32nd sample, as its folder may be renamed by others.
    DevWatchSnapshot sample();
    /// A process of the user as it is now; nothing for the system's numbers, zombies and what is unreadable.
    std::optional<DevWatchProcess> process(std::int32_t pid) const;
    std::set<std::uint16_t> listeningPorts(std::int32_t pid) const;

private:
    struct Seen {
        DevWatchSampledProcess sampled;
        bool listed = false;
    };

    std::optional<Seen> look(std::int32_t pid) const;
    std::vector<DevWatchSampledProcess> readProcesses(const std::vector<std::int32_t>& pids);
    void measure(DevWatchSnapshot& snapshot, const std::vector<DevWatchSampledProcess>& processes);
    void measureSystem(DevWatchSnapshot& snapshot);

    const DevWatchOperations& system_;
    DevWatchSafetyPolicy policy_;
    std::unordered_map<DevWatchProcessIdentity, DevWatchCPUSample> previousCPU_;
    std::optional<DevWatchSystemCPUSample> previousSystem_;
    std::unordered_map<std::int32_t, Seen> seen_; ///< by number, as of the last sample
    DevWatchListenerTable listeners_;
    std::uint32_t round_ = 0;
};

} // namespace FellowCore
