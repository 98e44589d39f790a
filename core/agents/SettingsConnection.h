#pragma once

#include "core/agents/SettingsBackup.h"
#include "core/base/FileOperations.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// The way in which a connector puts something into another program's settings and takes it out again: backup
/// first, then the helper, then the settings in one replacement, if nobody wrote to them meanwhile. All
/// block.
///
/// Throws `PumpHookSettings::Failure` and `FileError`, besides what the closures throw. After any failure the
/// settings hold what they held, and what was written beside them is taken back.
class SettingsConnection {
public:
    struct Places {
        std::filesystem::path settings;
        std::filesystem::path script;
        std::filesystem::path backup;
        /// Of another connector in the same settings. When this one is taken out, that backup is put right,
        /// so that the order in which the two are disconnected does not matter.
        std::optional<std::filesystem::path> otherBackup = {};
        /// Made if need be, and closed to everyone else.
        std::optional<std::filesystem::path> privateFolder = {};
    };

    /// What is put in.
    struct Installation {
        std::string installed; ///< the settings' new bytes
        std::string command;
    };

    struct Helper {
        std::string script;
        bool includeProject = false;
        std::string_view idleScript; ///< what stays in its place afterwards
    };

    /// From the settings' bytes (none when there is no file) what is to be put in.
    using Prepare = std::function<Installation(std::string_view data)>;
    /// The settings' bytes without what was put in, from what they hold now and the backup.
    using Restore = std::function<std::string(std::string_view current, const SettingsBackup& backup)>;

    SettingsConnection(FileOperations& files, Places places);

    bool connected() const;
    /// Nothing when not connected. A backup that cannot be understood counts as missing.
    std::optional<SettingsBackup> backup() const;
    /// Connected already, only the helper and the backup are written, and the settings left alone.
    void connect(const Helper& helper, const Prepare& prepare) const;
    /// Nothing happens when not connected. A helper that was edited stays.
    void disconnect(std::string_view idleScript, const Restore& restore) const;

private:
    void reconnect(SettingsBackup backup, const Helper& helper) const;
    std::optional<std::string> script() const;
    void requireOurs(const std::optional<std::string>& found, const Helper& helper,
                     const std::string* installed) const;
    void makeFolders() const;
    void rebaseOther(const SettingsBackup& backup, const Restore& restore) const;

    FileOperations& files_;
    Places places_;
};

} // namespace FellowCore
