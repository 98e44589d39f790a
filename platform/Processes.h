#pragma once

#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"
#include "core/devwatch/DevWatchTerminator.h"

#include <cstdint>
#include <memory>

namespace Platform {

/// The system's process table and sockets. Made once and shared: what it says about when processes began is
/// the same only within one object. Where the system lets nothing be read, every operation answers nothing.
std::unique_ptr<FellowCore::DevWatchOperations> processOperations();

/// Holds the process that has this number now; nothing when there is none.
std::unique_ptr<FellowCore::DevWatchProcessHandle> openProcess(std::int32_t pid);

/// What this very process may stop: nothing of its own and nothing that it descends from.
FellowCore::DevWatchSafetyPolicy ownSafetyPolicy(const FellowCore::DevWatchOperations& system);

} // namespace Platform
