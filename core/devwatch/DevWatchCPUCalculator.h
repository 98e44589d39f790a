#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchProcessIdentity.h"

#include <cstdint>
#include <optional>

namespace FellowCore {

/// How much processor time a process had used at a moment.
struct DevWatchCPUSample {
    DevWatchProcessIdentity identity;
    std::uint64_t totalCPUTimeNanoseconds = 0; ///< user and system, all its threads
    MonotonicInstant sampledAt;
};

/// How long the machine's processors had worked and rested at a moment, in the system's ticks.
struct DevWatchSystemCPUSample {
    std::uint64_t activeTicks = 0;
    std::uint64_t idleTicks = 0;
};

namespace DevWatchCPUCalculator {

/// What a process used between two moments, in percent of one processor: two busy ones are 200. Nothing for
/// two different processes, for counters or a clock that fell, and when it is not finite.
std::optional<double> percent(const DevWatchCPUSample& previous, const DevWatchCPUSample& current);

/// How busy the whole machine was, 0...100 percent. Nothing when a counter fell or neither moved.
std::optional<double> systemPercent(const DevWatchSystemCPUSample& previous,
                                    const DevWatchSystemCPUSample& current);

} // namespace DevWatchCPUCalculator

} // namespace FellowCore
