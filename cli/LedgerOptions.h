#pragma once

#include "cli/Command.h"
#include "core/base/Instant.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Fellow {

/// What a `fellow ledger` command line says beside its name.
struct LedgerOptions {
    std::optional<std::string> day = {};       ///< a day key
    std::filesystem::path file = {};           ///< the ledger
    FellowCore::Instant at = {};               ///< the moment that counts as now
    std::vector<std::string> words = {};       ///< what is no option, in order
    std::optional<std::string> complaint = {}; ///< why the command line is not understood
};

enum class DayOption { taken, refused };

/// Reads --home, --at and, where a command takes it, --day, with the value as the next word or behind "=".
/// After "--" everything is a word. What is not said comes from the environment and the clock.
LedgerOptions readLedgerOptions(Arguments arguments, DayOption day);

} // namespace Fellow
