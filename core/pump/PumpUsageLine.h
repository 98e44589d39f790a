#pragma once

#include "core/base/FileOperations.h"
#include "core/base/Instant.h"
#include "core/pump/PumpCodexUsage.h"
#include "core/pump/PumpUsageJSON.h"
#include "core/pump/PumpUsageRecords.h"

#include <cstdint>
#include <optional>

namespace FellowCore {

/// What a line of Claude's log says of one message: its record, and the message it belongs to.
struct PumpClaudeLine {
    PumpRecordKey key;
    PumpUsageRecord record;
};

/// Nothing when the line is no message of the assistant with token counts, or is stamped before 1970 or after
/// `now`. `file` and `offset` say where the line stands; they name the message where the line does not.
std::optional<PumpClaudeLine> pumpClaudeLine(const PumpUsageJSON::Values& values, const FileIdentity& file,
                                             std::uint64_t offset, Instant now);

/// What a line of Codex's log says of its rate limit. Nothing when it is no such line, or is stamped before
/// 1970 or after `now`.
std::optional<PumpCodexUsage> pumpCodexLine(const PumpUsageJSON::Values& values, Instant now);

} // namespace FellowCore
