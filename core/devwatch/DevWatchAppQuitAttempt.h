#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchApp.h"

#include <optional>

namespace FellowCore {

/// A polite request to quit that an application was sent. Force may follow three seconds later, to the very
/// same application.
struct DevWatchAppQuitAttempt {
    static constexpr Seconds patience = 3;

    DevWatchApp app;
    MonotonicInstant requestedAt; ///< of a clock that stands still while the machine sleeps

    /// `fresh` is the application as read a moment ago, or nothing when it is gone.
    bool canForce(const std::optional<DevWatchApp>& fresh, MonotonicInstant at) const;
};

} // namespace FellowCore
