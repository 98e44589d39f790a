#pragma once

#include "core/base/FileOperations.h"
#include "core/base/Instant.h"
#include "core/pump/PumpSourceState.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// One session log.
struct PumpLogFile {
    std::string path; ///< with every link resolved
    FileIdentity identity;
    std::uint64_t size = 0; ///< bytes
    Instant modified;
};

/// The identity as the cache and record keys spell it: device, number and birth, separated by colons.
std::string pumpIdentityText(const FileIdentity& identity);
/// Nothing unless the text is that.
std::optional<FileIdentity> pumpIdentityFromText(std::string_view text);

/// The session logs of one agent, found anew at every call, the most recently modified first. What the last
/// call found is kept as memory for the next one.
class PumpUsageLogs {
public:
    /// `files` must outlive this; `root` is the agent's log folder.
    PumpUsageLogs(FileOperations& files, std::filesystem::path root);

    /// Logs two levels deep: one folder a project, in it one "*.jsonl" a session. Links count as long as they
    /// stay inside the root. Blocks.
    void findByProject();
    /// Logs at any depth named "rollout-*.jsonl"; what is hidden is left out. Blocks.
    void findRollouts();

    /// Valid until the next call.
    std::span<const PumpLogFile> found() const { return std::span(found_).first(count_); }
    /// Missing without any log, unreadable when some folder could not be listed.
    PumpSourceState state() const { return state_; }

private:
    struct Target {
        std::filesystem::path path;
        FileStatus status;
    };

    bool begin();
    void finish();
    void listProject(const std::filesystem::path& folder);
    /// Lists a folder of rollouts and adds the folders in it to those that are yet to be listed.
    void listRollouts(const std::filesystem::path& folder, std::vector<std::filesystem::path>& folders);
    void take(const std::filesystem::path& folder, std::string_view name, const FileStatus& status);
    /// Where a link in the log folder leads, if that is of the kind and inside.
    std::optional<Target> targetOf(const std::filesystem::path& link, FileStatus::Kind kind);
    void add(std::string_view folder, std::string_view name, const FileStatus& status);
    /// Runs a listing, and remembers when it fails.
    void list(const std::filesystem::path& folder,
              const std::function<void(std::string_view, const FileStatus&)>& onEntry);

    FileOperations& files_;
    std::filesystem::path root_;
    std::filesystem::path resolvedRoot_;
    std::vector<PumpLogFile> found_; ///< longer than what was found, so that its memory serves again
    std::size_t count_ = 0;
    PumpSourceState state_ = PumpSourceState::missing;
};

} // namespace FellowCore
