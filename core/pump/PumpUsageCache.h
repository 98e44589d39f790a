#pragma once

#include "core/base/FileOperations.h"
#include "core/pump/PumpCodexUsage.h"
#include "core/pump/PumpUsageRecords.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// How far one log was read when the program last ran.
struct PumpCachedCursor {
    FileIdentity identity;
    std::uint64_t offset = 0; ///< the byte after the last whole line
    bool partial = false;     ///< whether some line was not JSON

    friend bool operator==(const PumpCachedCursor&, const PumpCachedCursor&) = default;
};

/// What the reader of usage logs keeps between two runs of the program, so that no log is read twice. Neither
/// text of a message nor its identifier is part of it.
struct PumpUsageCache {
    static constexpr std::int64_t version = 2;
    static constexpr std::size_t sizeLimit = 33'554'432; ///< bytes; a larger file is not looked at

    std::map<std::string, PumpCachedCursor> cursors; ///< by path
    PumpUsageRecords records;
    std::optional<PumpCodexUsage> codex = std::nullopt;
    std::optional<std::string> codexPath = std::nullopt;

    /// One JSON object; dates are seconds since 2001-01-01. A file whose path is not UTF-8, which JSON cannot
    /// hold, is left out with all that came from it.
    static std::string encoded(const std::map<std::string, PumpCachedCursor>& cursors,
                               const PumpUsageRecords& records, const std::optional<PumpCodexUsage>& codex,
                               const std::optional<std::string>& codexPath);
    /// Throws `JsonError` for anything but a cache of this version whose every date lies in 1970 to 9999,
    /// with counters of 0 or more and percentages of 0 to 100.
    static PumpUsageCache decoded(std::string_view text);
};

} // namespace FellowCore
