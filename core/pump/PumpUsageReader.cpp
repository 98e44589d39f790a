#include "core/pump/PumpUsageReader.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"
#include "core/pump/PumpUsageEstimate.h"
#include "core/pump/PumpUsageLine.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace FellowCore {

namespace {

constexpr std::size_t rateLimitsSizeLimit = 1'048'576;

/// Closes a file at the end of a block.
class OpenLog {
public:
    OpenLog(FileOperations& files, const std::string& path)
        : files_(files), file_(files.openForReading(path)) {}
    ~OpenLog() { files_.close(file_); }
    OpenLog(const OpenLog&) = delete;
    OpenLog& operator=(const OpenLog&) = delete;

    int file() const { return file_; }

private:
    FileOperations& files_;
    int file_;
};

/// What two states come to together: the worse news wins.
PumpSourceState folded(PumpSourceState state, PumpSourceState next) {
    switch (next) {
    case PumpSourceState::unreadable:
        return next;
    case PumpSourceState::partial:
        return state == PumpSourceState::unreadable ? state : next;
    case PumpSourceState::loading:
        return state == PumpSourceState::ready ? next : state;
    case PumpSourceState::ready:
    case PumpSourceState::missing:
        break;
    }
    return state;
}

} // namespace

void PumpUsageReader::Cursor::restart(const FileIdentity& file) {
    identity = file;
    offset = committedOffset = 0;
    partial = false;
    line.reset();
}

PumpUsageReader::PumpUsageReader(FileOperations& files, const PumpUsagePlaces& places, Calendar calendar)
    : files_(files), places_(places), calendar_(std::move(calendar)),
      claudeLogs_(files, standardized(places.home) / logFolder(PumpProvider::claude)),
      codexLogs_(files, standardized(places.home) / logFolder(PumpProvider::codex)) {
    loadCache();
}

PumpUsageSnapshot PumpUsageReader::refresh(Instant now, const PumpPreferences& preferences) {
    claudeLogs_.findByProject();
    codexLogs_.findRollouts();
    forgetVanished();

    std::int64_t budget = maximumScanBytes;
    PumpUsageSnapshot snapshot{.at = now, .codexSource = codexLogs_.state()};
    if (!codexLogs_.found().empty()) {
        // A limit is a latest value; what older files say of it adds nothing.
        const ScanResult result = scan(codexLogs_.found().front(), PumpProvider::codex, now, budget);
        snapshot.codexSource = result.state;
        snapshot.isLoading = result.more;
    }
    snapshot.claudeSource = scanClaude(now, budget, snapshot.isLoading);
    snapshot.codex = lastCodex_;

    const Instant weekStart = startOfWeek(calendar_, now);
    // One block more than the week, so that a block that began late on Sunday is still whole.
    changed_ |= records_.prune(weekStart - PumpClaudeUsage::blockLength, calendar_);
    if (auto exact = exactUsage(now)) {
        snapshot.claude = *std::move(exact);
        snapshot.claudeSource = PumpSourceState::ready;
    } else {
        snapshot.claude =
            estimatedUsage(records_, calendar_, now, weekStart, preferences.normalized().fiveHourBudget);
        if (snapshot.isLoading && snapshot.claudeSource != PumpSourceState::unreadable) {
            snapshot.claudeSource = PumpSourceState::loading;
        }
    }
    saveCache();
    return snapshot;
}

void PumpUsageReader::forgetVanished() {
    ++refreshes_;
    bool codexIsThere = false;
    for (const PumpUsageLogs* const logs : {&claudeLogs_, &codexLogs_}) {
        for (const PumpLogFile& file : logs->found()) {
            if (const auto known = cursors_.find(file.path); known != cursors_.end()) {
                known->second.lastSeen = refreshes_;
            }
            codexIsThere = codexIsThere || file.path == lastCodexPath_;
        }
    }
    std::set<std::string, std::less<>> gone;
    for (const auto& [path, cursor] : cursors_) {
        if (cursor.lastSeen != refreshes_) {
            gone.insert(path);
        }
    }
    if (!gone.empty()) {
        forget(gone);
        std::erase_if(cursors_, [this](const auto& entry) { return entry.second.lastSeen != refreshes_; });
    }
    if (lastCodexPath_ && !codexIsThere) {
        lastCodex_.reset();
        lastCodexPath_.reset();
        changed_ = true;
    }
}

void PumpUsageReader::forget(const std::set<std::string, std::less<>>& paths) {
    records_.forget(paths);
    changed_ = true;
}

PumpSourceState PumpUsageReader::scanClaude(Instant now, std::int64_t& budget, bool& hasMore) {
    PumpSourceState state = claudeLogs_.state();
    for (const PumpLogFile& file : claudeLogs_.found()) {
        const ScanResult result = scan(file, PumpProvider::claude, now, budget);
        state = folded(state, result.state);
        hasMore |= result.more;
    }
    return state;
}

PumpUsageReader::Cursor& PumpUsageReader::cursorFor(const PumpLogFile& file) {
    const auto [entry, isNew] = cursors_.try_emplace(file.path);
    Cursor& cursor = entry->second;
    cursor.lastSeen = refreshes_;
    if (isNew) {
        cursor.identity = file.identity;
        changed_ = true;
    } else if (cursor.identity != file.identity || file.size < cursor.offset) {
        // Another file, or this one was cut: nothing of what it said before is true any more.
        forget({file.path});
        cursor.restart(file.identity);
    }
    return cursor;
}

PumpUsageReader::ScanResult PumpUsageReader::scan(const PumpLogFile& file, PumpProvider provider, Instant now,
                                                  std::int64_t& budget) {
    Cursor& cursor = cursorFor(file);
    if (cursor.offset < file.size) {
        if (budget <= 0) {
            return {PumpSourceState::loading, true};
        }
        Scan scan{file, provider, now, cursor, cursor.line ? *cursor.line : fresh_};
        const bool wasRead = readNew(scan, budget);
        if (scan.line.isEmpty) {
            cursor.line.reset();
        } else if (!cursor.line) {
            cursor.line = std::make_unique<PumpUsageJSON::Stream>(fresh_);
        }
        fresh_.reset();
        if (!wasRead) {
            return {PumpSourceState::unreadable, false};
        }
        if (cursor.offset < file.size) {
            return {PumpSourceState::loading, true};
        }
    }
    return {cursor.partial || cursor.line ? PumpSourceState::partial : PumpSourceState::ready, false};
}

/// Reads on until the file's end as it was found, the end of the budget or the first failure, which alone
/// makes it false.
bool PumpUsageReader::readNew(Scan& scan, std::int64_t& budget) {
    chunk_.resize(chunkBytes);
    try {
        const OpenLog open(files_, scan.file.path);
        while (scan.cursor.offset < scan.file.size && budget > 0) {
            const std::uint64_t wanted =
                std::min({scan.file.size - scan.cursor.offset, static_cast<std::uint64_t>(budget),
                          std::uint64_t{chunkBytes}});
            const auto room = std::span(chunk_).first(static_cast<std::size_t>(wanted));
            const std::size_t count = files_.readAt(open.file(), scan.cursor.offset, room);
            if (count == 0) {
                break; // cut short since it was found, which the next refresh will see
            }
            takeChunk(scan, {reinterpret_cast<const char*>(chunk_.data()), count});
            budget -= static_cast<std::int64_t>(count);
        }
        return true;
    } catch (const std::system_error&) {
        return false; // told by the source state
    }
}

void PumpUsageReader::takeChunk(Scan& scan, std::string_view chunk) {
    while (!chunk.empty()) {
        const std::size_t length = std::min(chunk.find('\n'), chunk.size());
        if (length > 0) {
            scan.line.isEmpty = false;
            scan.line.accept(chunk.substr(0, length));
            scan.cursor.offset += length;
            chunk.remove_prefix(length);
        }
        if (!chunk.empty()) {
            chunk.remove_prefix(1);
            ++scan.cursor.offset;
            endLine(scan);
        }
    }
}

void PumpUsageReader::endLine(Scan& scan) {
    if (!scan.line.isEmpty) {
        scan.line.finishNumber();
        if (scan.line.isComplete()) {
            consume(scan);
        } else {
            scan.cursor.partial = true;
        }
        scan.line.reset();
    }
    scan.cursor.committedOffset = scan.cursor.offset;
    changed_ = true;
}

void PumpUsageReader::consume(const Scan& scan) {
    const PumpUsageJSON::Values& values = scan.line.values();
    if (scan.provider == PumpProvider::claude) {
        const auto line = pumpClaudeLine(values, scan.file.identity, scan.cursor.committedOffset, scan.now);
        if (line) {
            records_.add(line->key, scan.file.path, line->record);
        }
        return;
    }
    auto sample = pumpCodexLine(values, scan.now);
    // A sample from the future, left by a clock that was put back since, yields to any.
    if (sample &&
        (!lastCodex_ || sample->observedAt >= lastCodex_->observedAt || lastCodex_->observedAt > scan.now)) {
        lastCodex_ = *std::move(sample);
        lastCodexPath_ = scan.file.path;
    }
}

std::optional<PumpClaudeUsage> PumpUsageReader::exactUsage(Instant now) {
    if (!places_.rateLimits) {
        return std::nullopt;
    }
    try {
        const auto status = files_.status(*places_.rateLimits);
        if (!status) {
            rateLimits_.reset();
            return std::nullopt;
        }
        if (!rateLimits_ || rateLimits_->identity != status->identity || rateLimits_->size != status->size ||
            rateLimits_->modified != status->modified) {
            rateLimits_.reset();
            rateLimits_ = RateLimits{status->identity, status->size, status->modified,
                                     readWholeFile(files_, *places_.rateLimits, rateLimitsSizeLimit)};
        }
        return PumpClaudeUsage::exact(rateLimits_->text, now);
    } catch (const std::system_error&) {
        return std::nullopt; // then the estimate stands
    } catch (const FileError&) {
        return std::nullopt;
    }
}

void PumpUsageReader::loadCache() {
    if (!places_.cacheURL) {
        return;
    }
    try {
        PumpUsageCache cache =
            PumpUsageCache::decoded(readWholeFile(files_, *places_.cacheURL, PumpUsageCache::sizeLimit));
        for (auto& [path, cached] : cache.cursors) {
            Cursor& cursor = cursors_[path];
            cursor.restart(cached.identity);
            cursor.offset = cursor.committedOffset = cached.offset;
            cursor.partial = cached.partial;
        }
        records_ = std::move(cache.records);
        lastCodex_ = std::move(cache.codex);
        lastCodexPath_ = std::move(cache.codexPath);
    } catch (const FileError&) {
        // Without a cache everything is read anew, which costs a slow start and nothing else.
    } catch (const JsonError&) {
        // The same.
    }
}

void PumpUsageReader::saveCache() {
    if (!places_.cacheURL || !changed_) {
        return;
    }
    std::map<std::string, PumpCachedCursor> cursors;
    for (const auto& [path, cursor] : cursors_) {
        cursors.emplace_hint(cursors.end(), path,
                             PumpCachedCursor{cursor.identity, cursor.committedOffset, cursor.partial});
    }
    const std::string text = PumpUsageCache::encoded(cursors, records_, lastCodex_, lastCodexPath_);
    if (text.size() > PumpUsageCache::sizeLimit) {
        changed_ = false; // it would not be looked at; the older one still says nothing wrong
        return;
    }
    try {
        makeFolderOf(files_, *places_.cacheURL);
        writeWholeFile(files_, *places_.cacheURL, text, FileMode::ownerOnly);
        changed_ = false;
    } catch (const FileError&) {
        // Tried again by the next refresh; until then only a restart costs more.
    }
}

} // namespace FellowCore
