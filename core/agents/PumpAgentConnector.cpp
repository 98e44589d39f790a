#include "core/agents/PumpAgentConnector.h"

#include "core/agents/ClaudeStatusLineConnector.h"

#include <utility>

namespace FellowCore {

PumpAgentConnector::PumpAgentConnector(FileOperations& files, const SupportFolders& folders,
                                       PumpProvider agent, std::filesystem::path hookProgram)
    : files_(files), folders_(folders), agent_(agent), hookProgram_(std::move(hookProgram)) {}

std::filesystem::path PumpAgentConnector::settings() const {
    return agent_ == PumpProvider::claude ? claudeSettingsFile(folders_)
                                          : folders_.home() / ".codex" / "hooks.json";
}

std::filesystem::path PumpAgentConnector::script() const {
    return folders_.deskfellow() / ("pump-" + std::string(rawValue(agent_)) + "-hook.sh");
}

std::filesystem::path PumpAgentConnector::backup() const {
    return backupFile(folders_, agent_);
}

std::filesystem::path PumpAgentConnector::backupFile(const SupportFolders& folders, PumpProvider agent) {
    return folders.deskfellow() / ("pump-" + std::string(rawValue(agent)) + "-hooks-backup.json");
}

std::string PumpAgentConnector::command() const {
    return PumpAgentHook::shellQuoted(script().string());
}

SettingsConnection PumpAgentConnector::connection() const {
    SettingsConnection::Places places{.settings = settings(),
                                      .script = script(),
                                      .backup = backup(),
                                      .privateFolder = folders_.deskfellow()};
    if (agent_ == PumpProvider::claude) {
        places.otherBackup = ClaudeStatusLineConnector::backupFile(folders_);
    }
    return {files_, std::move(places)};
}

bool PumpAgentConnector::connected() const {
    return connection().connected();
}

bool PumpAgentConnector::includesProject() const {
    const auto backup = connection().backup();
    return backup && backup->includeProject;
}

void PumpAgentConnector::connect(PumpProjectConsent consent) const {
    const SettingsConnection::Helper helper{
        .script = PumpAgentHook::script(agent_, consent, {hookProgram_, folders_.deskfellow()}),
        .includeProject = consent == PumpProjectConsent::included,
        .idleScript = PumpAgentHook::idleScript};
    connection().connect(helper, [this](std::string_view data) {
        using Failure = PumpHookSettings::Failure;
        if (PumpHookSettings::holdsCommand(data, command())) {
            throw Failure(Failure::Case::missingBackup);
        }
        return SettingsConnection::Installation{PumpHookSettings::merge(data, agent_, command()), command()};
    });
}

void PumpAgentConnector::disconnect() const {
    connection().disconnect(
        PumpAgentHook::idleScript, [](std::string_view current, const SettingsBackup& backup) {
            return PumpHookSettings::restore(current, backup.original, backup.installed, backup.command);
        });
}

} // namespace FellowCore
