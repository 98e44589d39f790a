#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace FellowCore {

/// Notices a server that a supervisor starts again after it was stopped.
struct DevWatchRelaunch {
    static constexpr Seconds memory = 20; ///< how long a stop is remembered

    struct Stopped {
        std::string name;
        std::string executablePath;
        std::uint16_t port = 0;
        std::int32_t pid = 0;
        MonotonicInstant at;
    };

    std::vector<Stopped> stopped;

    void recordStop(const DevWatchListener& listener, MonotonicInstant at);
    /// The stopped server that listens again as another process, if any. Each stop is told of once.
    std::optional<Stopped> relaunched(const std::vector<DevWatchListener>& listeners, MonotonicInstant at);

private:
    void forget(MonotonicInstant at);
};

} // namespace FellowCore
