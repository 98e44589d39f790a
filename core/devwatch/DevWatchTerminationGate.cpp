#include "core/devwatch/DevWatchTerminationGate.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace FellowCore {

using Case = DevWatchTerminationRefusal::Case;

DevWatchTerminationGate::DevWatchTerminationGate(DevWatchProcessConfirmation confirmation,
                                                 Seconds graceInterval)
    : confirmation_(std::move(confirmation)),
      graceInterval_(std::isfinite(graceInterval) ? std::max(graceInterval, shortestGrace) : shortestGrace) {}

std::optional<DevWatchTerminationRefusal>
DevWatchTerminationGate::revalidate(const std::optional<DevWatchProcess>& freshProcess,
                                    const std::set<std::uint16_t>& listeningPorts,
                                    const DevWatchSafetyPolicy& policy) const {
    if (!freshProcess) {
        return DevWatchTerminationRefusal{Case::processGone};
    }
    if (const auto safety = policy.refusal(*freshProcess)) {
        return DevWatchTerminationRefusal{Case::unsafe, safety};
    }
    if (!confirmation_.matchesProcess(*freshProcess)) {
        return DevWatchTerminationRefusal{Case::processChanged};
    }
    if (!confirmation_.matchesFresh(freshProcess, listeningPorts)) {
        return DevWatchTerminationRefusal{Case::listenerChanged};
    }
    return std::nullopt;
}

std::optional<DevWatchTerminationRefusal>
DevWatchTerminationGate::authorizeStop(const std::optional<DevWatchProcess>& freshProcess,
                                       const std::set<std::uint16_t>& listeningPorts,
                                       const DevWatchSafetyPolicy& policy) {
    stopPrepared_ = false;
    if (stopDeliveredAt_) {
        return DevWatchTerminationRefusal{Case::alreadyStopping};
    }
    const auto refused = revalidate(freshProcess, listeningPorts, policy);
    stopPrepared_ = !refused;
    return refused;
}

void DevWatchTerminationGate::recordStopResult(bool delivered, MonotonicInstant at) {
    if (std::exchange(stopPrepared_, false) && delivered && std::isfinite(at.sinceOrigin)) {
        stopDeliveredAt_ = at;
    }
}

std::optional<DevWatchTerminationRefusal>
DevWatchTerminationGate::forceRefusal(const std::optional<DevWatchProcess>& freshProcess,
                                      const std::set<std::uint16_t>& listeningPorts,
                                      const DevWatchSafetyPolicy& policy, MonotonicInstant at) const {
    if (!stopDeliveredAt_) {
        return DevWatchTerminationRefusal{Case::stopNotDelivered};
    }
    if (!std::isfinite(at.sinceOrigin)) {
        return DevWatchTerminationRefusal{Case::invalidTime};
    }
    // Asked this way round, so that a difference that is no number is refused.
    const bool graceIsOver = at - *stopDeliveredAt_ >= graceInterval_;
    if (!graceIsOver) {
        return DevWatchTerminationRefusal{Case::gracePeriod};
    }
    return revalidate(freshProcess, listeningPorts, policy);
}

} // namespace FellowCore
