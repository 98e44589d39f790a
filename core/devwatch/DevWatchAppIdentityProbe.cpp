#include "core/devwatch/DevWatchAppIdentityProbe.h"

#include "core/devwatch/DevWatchProcessReading.h"

namespace FellowCore::DevWatchAppIdentityProbe {

std::optional<DevWatchProcessIdentity> identity(const DevWatchOperations& system, std::int32_t pid,
                                                std::uint32_t callerUID) {
    const auto record = DevWatchProcessReading::liveRecord(system, pid, callerUID);
    if (!record || !DevWatchProcessReading::actsOnlyFor(system, pid, callerUID)) {
        return std::nullopt;
    }
    return DevWatchProcessReading::identity(*record);
}

} // namespace FellowCore::DevWatchAppIdentityProbe
