#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchProcess.h"

#include <optional>
#include <vector>

namespace FellowCore {

/// How much of the processor a process uses.
struct DevWatchProcessUsage {
    DevWatchProcess process;
    double cpuPercent = 0; ///< of one processor, so it may be above 100

    friend bool operator==(const DevWatchProcessUsage&, const DevWatchProcessUsage&) = default;
};

/// The user's processes at one moment.
struct DevWatchSnapshot {
    MonotonicInstant sampledAt;
    std::optional<double> systemCPUPercent;   ///< 0...100; absent in the first snapshot
    std::vector<DevWatchProcessUsage> usages; ///< the busiest first, then by name and number
    std::vector<DevWatchListener> listeners;  ///< by port, then by number
    bool enumerationSucceeded = false;        ///< otherwise everything else is empty
};

} // namespace FellowCore
