#include "core/devwatch/DevWatchCPUCalculator.h"

#include <algorithm>
#include <cmath>

namespace FellowCore::DevWatchCPUCalculator {

std::optional<double> percent(const DevWatchCPUSample& previous, const DevWatchCPUSample& current) {
    const Seconds elapsed = current.sampledAt - previous.sampledAt;
    const bool clockWent = std::isfinite(previous.sampledAt.sinceOrigin) &&
                           std::isfinite(current.sampledAt.sinceOrigin) && elapsed > 0;
    if (previous.identity != current.identity || !clockWent ||
        current.totalCPUTimeNanoseconds < previous.totalCPUTimeNanoseconds) {
        return std::nullopt;
    }
    const std::uint64_t spent = current.totalCPUTimeNanoseconds - previous.totalCPUTimeNanoseconds;
    const double result = static_cast<double>(spent) / 1e9 * 100 / elapsed;
    return std::isfinite(result) ? std::optional(result) : std::nullopt;
}

std::optional<double> systemPercent(const DevWatchSystemCPUSample& previous,
                                    const DevWatchSystemCPUSample& current) {
    if (current.activeTicks < previous.activeTicks || current.idleTicks < previous.idleTicks) {
        return std::nullopt;
    }
    // As floating point, so that no sum of two counters can overflow.
    const double active = static_cast<double>(current.activeTicks - previous.activeTicks);
    const double idle = static_cast<double>(current.idleTicks - previous.idleTicks);
    if (active + idle == 0) {
        return std::nullopt;
    }
    return std::min(100.0, active / (active + idle) * 100);
}

} // namespace FellowCore::DevWatchCPUCalculator
