#pragma once

#include "core/base/Calendar.h"
#include "core/base/FileOperations.h"
#include "core/base/Instant.h"
#include "core/pump/PumpPreferences.h"
#include "core/pump/PumpProvider.h"
#include "core/pump/PumpUsageCache.h"
#include "core/pump/PumpUsageLogs.h"
#include "core/pump/PumpUsageRecords.h"
#include "core/pump/PumpUsageSnapshot.h"
#include "core/pump/PumpUsageStream.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace FellowCore {

/// Where the reader finds and keeps things.
struct PumpUsagePlaces {
    std::filesystem::path home;                                     ///< holds the agents' own folders
    std::optional<std::filesystem::path> cacheURL = std::nullopt;   ///< without it nothing is kept
    std::optional<std::filesystem::path> rateLimits = std::nullopt; ///< what Claude's status line passes on
};

/// Turns the session logs that the agents leave in the home folder into one small figure for each, without
/// reading what was said in them.
///
/// Each refresh reads only what was appended since the last one, and never more than `maximumScanBytes`, the
/// most recent logs first; what is left over is the next one's. A refresh that finds nothing new opens no
/// file. What was learned survives in the cache file. Nothing is thrown but for want of memory: what goes
/// wrong shows as a source state. Used from one thread; every call blocks.
class PumpUsageReader {
public:
    static constexpr std::int64_t maximumScanBytes = 8'388'608; ///< of one refresh, over all files
    static constexpr std::size_t chunkBytes = 65'536;           ///< the most that is read at once

    /// Reads the cache. `files` must outlive the reader.
    PumpUsageReader(FileOperations& files, const PumpUsagePlaces& places, Calendar calendar);

    PumpUsageSnapshot refresh(Instant now, const PumpPreferences& preferences);

private:
    /// The position in one log.
    struct Cursor {
        FileIdentity identity;
        std::uint64_t offset = 0;                              ///< how far it was read
        std::uint64_t committedOffset = 0;                     ///< the byte after the last whole line
        bool partial = false;                                  ///< some line was not JSON
        std::uint64_t lastSeen = 0;                            ///< the refresh that found the file
        std::unique_ptr<PumpUsageJSON::Stream> line = nullptr; ///< the line read half; null between lines

        void restart(const FileIdentity& file);
    };
    using Cursors = std::map<std::string, Cursor, std::less<>>;

    struct ScanResult {
        PumpSourceState state;
        bool more = false;
    };
    /// What one scan works with.
    struct Scan {
        const PumpLogFile& file;
        PumpProvider provider;
        Instant now;
        Cursor& cursor;
        PumpUsageJSON::Stream& line;
    };
    /// The status line's file as it was last read.
    struct RateLimits {
        FileIdentity identity;
        std::uint64_t size = 0;
        Instant modified;
        std::string text;
    };

    void forgetVanished();
    void forget(const std::set<std::string, std::less<>>& paths);
    ScanResult scan(const PumpLogFile& file, PumpProvider provider, Instant now, std::int64_t& budget);
    Cursor& cursorFor(const PumpLogFile& file);
    bool readNew(Scan& scan, std::int64_t& budget);
    void takeChunk(Scan& scan, std::string_view chunk);
    void endLine(Scan& scan);
    void consume(const Scan& scan);
    PumpSourceState scanClaude(Instant now, std::int64_t& budget, bool& hasMore);
    std::optional<PumpClaudeUsage> exactUsage(Instant now);
    void loadCache();
    void saveCache();

    FileOperations& files_;
    PumpUsagePlaces places_;
    Calendar calendar_;
    PumpUsageLogs claudeLogs_;
    PumpUsageLogs codexLogs_;
    Cursors cursors_;
    PumpUsageRecords records_;
    std::optional<PumpCodexUsage> lastCodex_;
    std::optional<std::string> lastCodexPath_;
    std::optional<RateLimits> rateLimits_;
    PumpUsageJSON::Stream fresh_; ///< for the lines that are read whole
    std::vector<std::byte> chunk_;
    std::uint64_t refreshes_ = 0;
    bool changed_ = false; ///< since the cache was saved
};

} // namespace FellowCore
