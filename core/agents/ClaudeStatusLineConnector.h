#pragma once

#include "core/agents/SettingsConnection.h"
#include "core/base/FileOperations.h"
#include "core/base/Json.h"
#include "core/base/SupportFolders.h"

#include <filesystem>
#include <stdexcept>
#include <string>

namespace FellowCore {

/// Connects Pump to Claude Code's status line, through which the agent tells its exact limits. A status line
/// of the user's own is wrapped: it gets the same input, and what it prints is what is shown. All that
/// touches files blocks, and may throw `ConnectionError` or `FileError`; after either the settings hold what
/// they held before.
class ClaudeStatusLineConnector {
public:
    enum class Status { disconnected, connected };

    /// With the sentence for the user in `what()`.
    class ConnectionError : public std::runtime_error {
    public:
        enum class Case { missingBackup, notACommand, invalidSettings, changed, editedScript };

        /// `settings` is named in the sentence about invalid ones.
        ConnectionError(Case failure, const std::filesystem::path& settings);
        Case failure() const { return failure_; }

    private:
        Case failure_;
    };

    /// `hookProgram` is where fellow-hook is installed; absolute.
    ClaudeStatusLineConnector(FileOperations& files, const SupportFolders& folders,
                              std::filesystem::path hookProgram);

    std::filesystem::path script() const;
    static std::filesystem::path backupFile(const SupportFolders& folders);
    /// The script's text; with the program gone it still runs the user's own status line.
    std::string scriptText() const;

    Status status() const;
    /// Connecting twice is like connecting once.
    void connect() const;
    /// Puts the settings back byte for byte when nothing else changed them since, and otherwise puts back
    /// only the status line's command, if it is still Pump's.
    void disconnect() const;

    /// What the settings become, and the command that is put into them. Throws `ConnectionError`
    /// (invalidSettings, notACommand, missingBackup).
    SettingsConnection::Installation installed(std::string_view data) const;
    /// The settings without Pump's command, which is put back as the backup has it. Throws `ConnectionError`
    /// (invalidSettings).
    std::string restored(std::string_view current, const SettingsBackup& backup) const;

private:
    SettingsConnection connection() const;
    Json parsed(std::string_view data) const;

    FileOperations& files_;
    SupportFolders folders_;
    std::filesystem::path hookProgram_;
};

/// Claude Code's settings, which hold both its hooks and its status line.
std::filesystem::path claudeSettingsFile(const SupportFolders& folders);
/// Where the status line leaves the limits for Pump.
std::filesystem::path claudeRateLimitsFile(const SupportFolders& folders);

} // namespace FellowCore
