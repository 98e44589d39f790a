#include "core/devwatch/DevWatchAppQuitAttempt.h"

#include <cmath>

namespace FellowCore {

bool DevWatchAppQuitAttempt::canForce(const std::optional<DevWatchApp>& fresh, MonotonicInstant at) const {
    if (!fresh || fresh->terminated || fresh->identity != app.identity || fresh->name != app.name ||
        fresh->bundleIdentifier != app.bundleIdentifier || fresh->bundlePath != app.bundlePath) {
        return false;
    }
    return std::isfinite(at.sinceOrigin) && std::isfinite(requestedAt.sinceOrigin) &&
           at - requestedAt >= patience;
}

} // namespace FellowCore
