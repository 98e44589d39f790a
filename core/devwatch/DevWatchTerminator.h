#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchAppQuitAttempt.h"
#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"
#include "core/devwatch/DevWatchTerminationGate.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace FellowCore {

enum class DevWatchSignal {
    stop,  ///< the process may tidy up first
    force, ///< it may not
};

/// One process held open, so that a signal reaches it and never a later one with its number.
class DevWatchProcessHandle {
public:
    virtual ~DevWatchProcessHandle() = default;
    /// Whether the signal was delivered; false when the process is gone or the system refuses.
    virtual bool send(DevWatchSignal signal) = 0;
};

/// Opens the process that has a number at this moment; nothing when there is none or the system cannot hold
/// processes.
using DevWatchProcessOpener = std::function<std::unique_ptr<DevWatchProcessHandle>(std::int32_t pid)>;

/// What became of an attempt to end a process.
struct DevWatchTerminationOutcome {
    std::optional<DevWatchTerminationRefusal> refusal; ///< why nothing was sent
    bool delivered = false;
};

/// The one place that ends processes. Each time in this order: hold the process, read it anew, ask the gate,
/// signal what is held. Whatever takes over the number between two of these steps, nothing but the process
/// that was read can be hit.
class DevWatchTerminator {
public:
    /// `system` must outlive it. `gateClock` stands still while the machine sleeps.
    DevWatchTerminator(const DevWatchOperations& system, DevWatchSafetyPolicy policy,
                       DevWatchProcessOpener open, std::function<MonotonicInstant()> gateClock);

    /// The polite stop. Blocks for the two reads, about a millisecond.
    DevWatchTerminationOutcome stop(DevWatchTerminationGate& gate) const;
    /// The forced one.
    DevWatchTerminationOutcome force(const DevWatchTerminationGate& gate) const;
    /// Forces an application that was asked to quit. `freshApp` reads it anew once its process is held; true
    /// when the signal was delivered.
    bool forceQuit(const DevWatchAppQuitAttempt& attempt,
                   const std::function<std::optional<DevWatchApp>()>& freshApp) const;

private:
    const DevWatchOperations& system_;
    DevWatchSafetyPolicy policy_;
    DevWatchProcessOpener open_;
    std::function<MonotonicInstant()> gateClock_;
};

} // namespace FellowCore
