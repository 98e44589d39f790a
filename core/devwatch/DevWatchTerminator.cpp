#include "core/devwatch/DevWatchTerminator.h"

#include "core/devwatch/DevWatchAppIdentityProbe.h"
#include "core/devwatch/DevWatchProcessReading.h"

#include <utility>

namespace FellowCore {

DevWatchTerminator::DevWatchTerminator(const DevWatchOperations& system, DevWatchSafetyPolicy policy,
                                       DevWatchProcessOpener open,
                                       std::function<MonotonicInstant()> gateClock)
    : system_(system), policy_(std::move(policy)), open_(std::move(open)), gateClock_(std::move(gateClock)) {}

DevWatchTerminationOutcome DevWatchTerminator::stop(DevWatchTerminationGate& gate) const {
    const std::int32_t pid = gate.confirmation().process.identity.pid;
    const auto handle = pid < devWatchLowestPid ? nullptr : open_(pid);
    const auto ports = DevWatchProcessReading::listeningPorts(system_, pid);
    const auto fresh = DevWatchProcessReading::process(system_, pid, policy_.currentUserID);
    if (const auto refusal = gate.authorizeStop(fresh, ports, policy_)) {
        return {refusal, false};
    }
    const bool delivered = handle && handle->send(DevWatchSignal::stop);
    gate.recordStopResult(delivered, gateClock_());
    return {std::nullopt, delivered};
}

DevWatchTerminationOutcome DevWatchTerminator::force(const DevWatchTerminationGate& gate) const {
    const std::int32_t pid = gate.confirmation().process.identity.pid;
    const auto handle = pid < devWatchLowestPid ? nullptr : open_(pid);
    const auto ports = DevWatchProcessReading::listeningPorts(system_, pid);
    const auto fresh = DevWatchProcessReading::process(system_, pid, policy_.currentUserID);
    if (const auto refusal = gate.forceRefusal(fresh, ports, policy_, gateClock_())) {
        return {refusal, false};
    }
    return {std::nullopt, handle && handle->send(DevWatchSignal::force)};
}

bool DevWatchTerminator::forceQuit(const DevWatchAppQuitAttempt& attempt,
                                   const std::function<std::optional<DevWatchApp>()>& freshApp) const {
    const std::int32_t pid = attempt.app.identity.pid;
    const auto handle = pid < devWatchLowestPid ? nullptr : open_(pid);
    if (!handle || !attempt.canForce(freshApp(), gateClock_())) {
        return false;
    }
    const auto process = DevWatchProcessReading::process(system_, pid, policy_.currentUserID);
    if (!process || policy_.refusal(*process) ||
        DevWatchAppIdentityProbe::identity(system_, pid, policy_.currentUserID) != attempt.app.identity) {
        return false;
    }
    return handle->send(DevWatchSignal::force);
}

} // namespace FellowCore
