#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchSnapshot.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace FellowCore {

/// What Dhiru makes of the last while.
enum class DevWatchActivityState {
    calm,
    busy,       ///< the machine has been busy for a minute
    hog,        ///< a process has held the processor for two minutes
    idleServer, ///< a listening process has been quiet for over two hours
};

/// The name of the case: "calm", ...
std::string_view rawValue(DevWatchActivityState state);

/// Turns a stream of snapshots into one calm judgement, about what lasts and never about a spike.
///
/// Times are of a clock that goes on while the machine sleeps. Nothing is known across a gap of more than 45
/// seconds or a step back: everything is forgotten, and the observation after it counts as the first.
struct DevWatchActivityTracker {
    static constexpr Seconds longestGap = 45;
    static constexpr double busyAbove = 60; ///< percent of the machine
    static constexpr Seconds busyTime = 60;
    static constexpr double hogAbove = 80; ///< percent of one processor
    static constexpr Seconds hogTime = 120;
    static constexpr double quietAtMost = 1; ///< percent of one processor
    static constexpr Seconds idleServerTime = 7200;

    DevWatchActivityState state = DevWatchActivityState::calm;
    std::vector<DevWatchProcessIdentity> hogs;        ///< sorted
    std::vector<DevWatchProcessIdentity> idleServers; ///< sorted
    std::optional<MonotonicInstant> previousTime;
    std::optional<MonotonicInstant> busySince;
    std::unordered_map<DevWatchProcessIdentity, MonotonicInstant> hogSince;
    std::unordered_map<DevWatchProcessIdentity, MonotonicInstant> idleSince;

    void reset();
    /// A server whose use is not known in this snapshot is not taken for quiet.
    void observe(std::optional<double> systemCPUPercent, const std::vector<DevWatchProcessUsage>& usages,
                 const std::vector<DevWatchListener>& listeners, MonotonicInstant at);

private:
    void judge(MonotonicInstant at);
};

} // namespace FellowCore
