#pragma once

#include "core/agents/PumpAgentEvent.h"
#include "core/base/FileOperations.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace FellowCore {

/// How much of the end of the agents' event file is looked at, in bytes.
inline constexpr std::uintmax_t agentTailBytes = 409600;

/// The events in the end of the file, in its order. None when it does not exist or cannot be read. Blocks.
std::vector<PumpAgentEvent> readAgentEvents(FileOperations& files, const std::filesystem::path& file);

} // namespace FellowCore
