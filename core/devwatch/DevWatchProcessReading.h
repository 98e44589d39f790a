#pragma once

#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

/// One process read from the system, piece by piece. Stateless, so that it may be done on any thread,
/// directly before a signal too.
namespace FellowCore::DevWatchProcessReading {

/// The record of a living process of the user; nothing for the system's numbers, other users and zombies.
std::optional<DevWatchProcessRecord> liveRecord(const DevWatchOperations& system, std::int32_t pid,
                                                std::uint32_t uid);
/// Whether both the real and the effective user of a process are this one.
bool actsOnlyFor(const DevWatchOperations& system, std::int32_t pid, std::uint32_t uid);
DevWatchProcessIdentity identity(const DevWatchProcessRecord& record);
/// The record with both paths; nothing when either cannot be read in full.
std::optional<DevWatchProcess> withPaths(const DevWatchOperations& system,
                                         const DevWatchProcessRecord& record);
/// Everything of the above.
std::optional<DevWatchProcess> process(const DevWatchOperations& system, std::int32_t pid, std::uint32_t uid);
/// The ports on which a process listens; each once, whatever the address family.
std::set<std::uint16_t> listeningPorts(const DevWatchOperations& system, std::int32_t pid);
/// The processes that a process descends from, its parent first.
std::vector<DevWatchProcessIdentity> ancestors(const DevWatchOperations& system, std::int32_t pid);

} // namespace FellowCore::DevWatchProcessReading
