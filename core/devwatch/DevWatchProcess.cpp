#include "core/devwatch/DevWatchProcess.h"

namespace FellowCore {

Seconds DevWatchProcess::uptime(Instant at) const {
    constexpr double microsecondsPerSecond = 1e6;
    return at.toUnix() - static_cast<double>(identity.startedAtMicroseconds) / microsecondsPerSecond;
}

std::string devWatchLastComponent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace FellowCore
