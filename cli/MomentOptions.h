#pragma once

#include "cli/Command.h"
#include "core/base/Instant.h"
#include "core/base/SupportFolders.h"

#include <optional>
#include <string>

namespace Fellow {

/// What a `fellow usage`, `fellow sessions` or `fellow clocks` command line says.
struct MomentOptions {
    std::optional<FellowCore::SupportFolders> folders = {}; ///< absent only with a complaint
    FellowCore::Instant at = {};                            ///< the moment that counts as now
    bool isOtherMoment = false;                             ///< it was said, and is not the clock's
    bool json = false;
    std::optional<std::string> complaint = {}; ///< why the command line is not understood
};

/// Reads --json, --home and --at, the latter two with the value as the next word or behind "=". What is not
/// said comes from the environment and the clock.
MomentOptions readMomentOptions(Arguments arguments);

} // namespace Fellow
