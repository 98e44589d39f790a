#pragma once

#include "core/agents/PumpAgentHook.h"
#include "core/agents/PumpHookSettings.h"
#include "core/agents/SettingsConnection.h"
#include "core/base/FileOperations.h"
#include "core/base/SupportFolders.h"
#include "core/pump/PumpProvider.h"

#include <filesystem>
#include <string>

namespace FellowCore {

/// Connects Pump to one agent: a helper script, and hooks in the agent's settings that run it. All that
/// touches files blocks, and may throw `PumpHookSettings::Failure` or `FileError`; after either the settings
/// hold what they held before. Connecting and disconnecting are to be done one at a time.
class PumpAgentConnector {
public:
    /// `hookProgram` is where fellow-hook is installed; absolute.
    PumpAgentConnector(FileOperations& files, const SupportFolders& folders, PumpProvider agent,
                       std::filesystem::path hookProgram);

    std::filesystem::path settings() const; ///< the agent's own file, under home
    std::filesystem::path script() const;
    std::filesystem::path backup() const;
    static std::filesystem::path backupFile(const SupportFolders& folders, PumpProvider agent);
    /// What the agent's settings are given to run: the script's path as one word of a shell command.
    std::string command() const;

    bool connected() const;
    /// The consent with which the agent is connected; false when it is not.
    bool includesProject() const;
    /// Connecting twice is like connecting once, with the consent given last.
    void connect(PumpProjectConsent consent) const;
    /// Puts the settings back byte for byte when nothing else changed them since, and otherwise takes only
    /// Pump's hooks out.
    void disconnect() const;

private:
    SettingsConnection connection() const;

    FileOperations& files_;
    SupportFolders folders_;
    PumpProvider agent_;
    std::filesystem::path hookProgram_;
};

} // namespace FellowCore
