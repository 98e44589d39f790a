#include "core/devwatch/DevWatchActivityTracker.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace FellowCore {

namespace {

using Identities = std::unordered_set<DevWatchProcessIdentity>;
using Since = std::unordered_map<DevWatchProcessIdentity, MonotonicInstant>;

/// Clocks go on for those that are still there, begin for new ones, and end for the others.
void keepOnly(Since& since, const Identities& present, MonotonicInstant at) {
    std::erase_if(since, [&present](const auto& entry) { return !present.contains(entry.first); });
    for (const DevWatchProcessIdentity& identity : present) {
        since.try_emplace(identity, at);
    }
}

std::vector<DevWatchProcessIdentity> lasting(const Since& since, MonotonicInstant at, Seconds least) {
    std::vector<DevWatchProcessIdentity> identities;
    for (const auto& [identity, start] : since) {
        if (at - start >= least) {
            identities.push_back(identity);
        }
    }
    std::ranges::sort(identities);
    return identities;
}

} // namespace

std::string_view rawValue(DevWatchActivityState state) {
    switch (state) {
    case DevWatchActivityState::calm:
        return "calm";
    case DevWatchActivityState::busy:
        return "busy";
    case DevWatchActivityState::hog:
        return "hog";
    case DevWatchActivityState::idleServer:
        break;
    }
    return "idleServer";
}

void DevWatchActivityTracker::reset() {
    *this = DevWatchActivityTracker();
}

void DevWatchActivityTracker::observe(std::optional<double> systemCPUPercent,
                                      const std::vector<DevWatchProcessUsage>& usages,
                                      const std::vector<DevWatchListener>& listeners, MonotonicInstant at) {
    if (!std::isfinite(at.sinceOrigin)) {
        return reset();
    }
    if (previousTime && (at <= *previousTime || at - *previousTime > longestGap)) {
        reset();
    }
    previousTime = at;

    const bool isBusy = systemCPUPercent && std::isfinite(*systemCPUPercent) && *systemCPUPercent > busyAbove;
    busySince = isBusy ? busySince.value_or(at) : std::optional<MonotonicInstant>();

    Identities hot;
    Identities quiet;
    for (const DevWatchProcessUsage& usage : usages) {
        if (std::isfinite(usage.cpuPercent) && usage.cpuPercent > hogAbove) {
            hot.insert(usage.process.identity);
        } else if (std::isfinite(usage.cpuPercent) && usage.cpuPercent <= quietAtMost) {
            quiet.insert(usage.process.identity);
        }
    }
    Identities quietServers;
    for (const DevWatchListener& listener : listeners) {
        if (quiet.contains(listener.process.identity)) {
            quietServers.insert(listener.process.identity);
        }
    }
    keepOnly(hogSince, hot, at);
    keepOnly(idleSince, quietServers, at);
    judge(at);
}

void DevWatchActivityTracker::judge(MonotonicInstant at) {
    hogs = lasting(hogSince, at, hogTime);
    idleServers = lasting(idleSince, at, idleServerTime);
    if (!hogs.empty()) {
        state = DevWatchActivityState::hog;
    } else if (busySince && at - *busySince >= busyTime) {
        state = DevWatchActivityState::busy;
    } else {
        state = idleServers.empty() ? DevWatchActivityState::calm : DevWatchActivityState::idleServer;
    }
}

} // namespace FellowCore
