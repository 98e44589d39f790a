#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchProcessConfirmation.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"

#include <cstdint>
#include <optional>
#include <set>

namespace FellowCore {

/// Why a signal is not sent.
struct DevWatchTerminationRefusal {
    enum class Case {
        unsafe, ///< `safety` says why
        processGone,
        processChanged,
        listenerChanged,  ///< the process no longer listens on the confirmed port
        stopNotDelivered, ///< force comes only after a polite stop
        gracePeriod,      ///< the polite stop is too recent
        alreadyStopping,
        invalidTime,
    };

    Case refusal;
    std::optional<DevWatchSafetyRefusal> safety = std::nullopt; ///< exactly for `unsafe`

    friend bool operator==(const DevWatchTerminationRefusal&, const DevWatchTerminationRefusal&) = default;
};

/// Guards the end of one confirmed process: first a polite stop, once; then, no sooner than the grace later,
/// force. What the user confirmed must still hold at each of them.
///
/// It sends nothing. The caller reads the process anew directly before asking, and signals directly after.
/// Times are of a clock that stands still while the machine sleeps, so that the process has had its grace.
class DevWatchTerminationGate {
public:
    static constexpr Seconds shortestGrace = 5;

    /// `graceInterval` is raised to at least five seconds; what is not finite counts as five.
    explicit DevWatchTerminationGate(DevWatchProcessConfirmation confirmation,
                                     Seconds graceInterval = shortestGrace);

    const DevWatchProcessConfirmation& confirmation() const { return confirmation_; }
    Seconds graceInterval() const { return graceInterval_; }
    std::optional<MonotonicInstant> stopDeliveredAt() const { return stopDeliveredAt_; }
    bool stopPrepared() const { return stopPrepared_; }

    /// Nothing when the polite signal may be sent now; its result is then to be recorded.
    std::optional<DevWatchTerminationRefusal>
    authorizeStop(const std::optional<DevWatchProcess>& freshProcess,
                  const std::set<std::uint16_t>& listeningPorts, const DevWatchSafetyPolicy& policy);
    /// Ignored unless a stop was authorised since. After one that was not delivered it may be tried again.
    void recordStopResult(bool delivered, MonotonicInstant at);
    /// Nothing when the forced signal may be sent now.
    std::optional<DevWatchTerminationRefusal> forceRefusal(const std::optional<DevWatchProcess>& freshProcess,
                                                           const std::set<std::uint16_t>& listeningPorts,
                                                           const DevWatchSafetyPolicy& policy,
                                                           MonotonicInstant at) const;

private:
    std::optional<DevWatchTerminationRefusal> revalidate(const std::optional<DevWatchProcess>& freshProcess,
                                                         const std::set<std::uint16_t>& listeningPorts,
                                                         const DevWatchSafetyPolicy& policy) const;

    const DevWatchProcessConfirmation confirmation_;
    const Seconds graceInterval_;
    std::optional<MonotonicInstant> stopDeliveredAt_;
    bool stopPrepared_ = false;
};

} // namespace FellowCore
