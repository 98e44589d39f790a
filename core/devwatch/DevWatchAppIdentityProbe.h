#pragma once

#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchProcessIdentity.h"

#include <cstdint>
#include <optional>

namespace FellowCore::DevWatchAppIdentityProbe {

/// Who is behind a number at this moment; nothing for the system's numbers, for a process that is gone or a
/// zombie, and for one that does not run as the caller in both its real and its effective user.
std::optional<DevWatchProcessIdentity> identity(const DevWatchOperations& system, std::int32_t pid,
                                                std::uint32_t callerUID);

} // namespace FellowCore::DevWatchAppIdentityProbe
