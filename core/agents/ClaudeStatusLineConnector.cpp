#include "core/agents/ClaudeStatusLineConnector.h"

#include "core/agents/ClaudeRateLimits.h"
#include "core/agents/PumpAgentConnector.h"
#include "core/agents/PumpAgentHook.h"
#include "core/agents/PumpHookSettings.h"
#include "core/agents/SettingsDocument.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>

namespace FellowCore {

namespace {

using Error = ClaudeStatusLineConnector::ConnectionError;

constexpr std::string_view statusLineKey = "statusLine";
constexpr std::string_view typeKey = "type";
constexpr std::string_view commandType = "command";
constexpr std::string_view commandKey = "command";

constexpr std::string_view firstLine = "#!/bin/sh\n";
/// What stays where the script was: a session that still runs may have kept the command, with the user's own
/// status line in it.
constexpr std::string_view idleScript = R"sh(#!/bin/sh
shell=/bin/bash
[ -x "$shell" ] || shell=/bin/sh
[ "$#" -eq 0 ] || exec "$shell" -c "$1"
)sh";

std::string message(Error::Case failure, const std::filesystem::path& settings) {
    switch (failure) {
    case Error::Case::missingBackup:
        return "The original Claude Code settings backup is missing. Restore your status line manually "
               "before "
               "reconnecting.";
    case Error::Case::notACommand:
        return "The existing Claude Code status line is not a command. It has been left unchanged.";
    case Error::Case::invalidSettings:
        return settings.string() + " is not a valid JSON object. Fix it before connecting Claude Code.";
    case Error::Case::changed:
        return "Claude Code's settings changed while Pump was connecting. Try again; your edits were "
               "preserved.";
    case Error::Case::editedScript:
        return "Pump's status line script was edited. Move it aside before reconnecting; your edits were "
               "preserved.";
    }
    return {};
}

Error::Case translated(PumpHookSettings::Failure::Case failure) {
    using Case = PumpHookSettings::Failure::Case;
    switch (failure) {
    case Case::missingBackup:
        return Error::Case::missingBackup;
    case Case::changed:
        return Error::Case::changed;
    case Case::editedHelper:
        return Error::Case::editedScript;
    case Case::invalid:
        break;
    }
    return Error::Case::invalidSettings;
}

/// The command of a status line that is one; nothing for anything else.
const std::string* commandOf(const Json& line) {
    if (!line.is_object() || !line.contains(typeKey) || line.at(typeKey) != commandType ||
        !line.contains(commandKey)) {
        return nullptr;
    }
    return line.at(commandKey).get_ptr<const std::string*>();
}

/// Puts what was there before in the place of Pump's command, and keeps what else the line has been given
/// since. Whether there was anything to do.
bool putBack(Json& settings, const Json& original, std::string_view command) {
    const auto line = settings.find(statusLineKey);
    if (line == settings.end()) {
        return false;
    }
    const std::string* const current = commandOf(*line);
    if (current == nullptr || *current != command) {
        return false;
    }
    const auto before = original.find(statusLineKey);
    const std::string* const own = before != original.end() ? commandOf(*before) : nullptr;
    if (own != nullptr) {
        (*line)[commandKey] = *own;
    } else {
        settings.erase(line);
    }
    return true;
}

} // namespace

Error::ConnectionError(Case failure, const std::filesystem::path& settings)
    : std::runtime_error(message(failure, settings)), failure_(failure) {}

ClaudeStatusLineConnector::ClaudeStatusLineConnector(FileOperations& files, const SupportFolders& folders,
                                                     std::filesystem::path hookProgram)
    : files_(files), folders_(folders), hookProgram_(std::move(hookProgram)) {}

std::filesystem::path ClaudeStatusLineConnector::script() const {
    return folders_.home() / ".claude" / "scripts" / "deskfellow-statusline.sh";
}

std::filesystem::path ClaudeStatusLineConnector::backupFile(const SupportFolders& folders) {
    return folders.home() / ".claude" / "settings.json.deskfellow-backup";
}

std::string ClaudeStatusLineConnector::scriptText() const {
    return std::string(firstLine) +
           "# Deskfellow Pump: saves Claude Code's rate limits (5-hour and weekly % and reset times, nothing "
           "else)\n"
           "# for Pump, then prints the model name, or the output of the user's own status line if wrapped.\n"
           "DF_HOOK=" +
           PumpAgentHook::shellQuoted(hookProgram_.string()) +
           "\nDF_OUT=" + PumpAgentHook::shellQuoted(claudeRateLimitsFile(folders_).string()) +
           "\n[ ! -x \"$DF_HOOK\" ] || exec \"$DF_HOOK\" statusline \"$DF_OUT\" \"$@\"\n" +
           std::string(idleScript.substr(firstLine.size()));
}

SettingsConnection ClaudeStatusLineConnector::connection() const {
    return {files_,
            {.settings = claudeSettingsFile(folders_),
             .script = script(),
             .backup = backupFile(folders_),
             .otherBackup = PumpAgentConnector::backupFile(folders_, PumpProvider::claude)}};
}

ClaudeStatusLineConnector::Status ClaudeStatusLineConnector::status() const {
    return connection().connected() ? Status::connected : Status::disconnected;
}

Json ClaudeStatusLineConnector::parsed(std::string_view data) const {
    try {
        return SettingsDocument::parsed(data);
    } catch (const JsonError&) {
        throw ConnectionError(ConnectionError::Case::invalidSettings, claudeSettingsFile(folders_));
    }
}

SettingsConnection::Installation ClaudeStatusLineConnector::installed(std::string_view data) const {
    using Case = ConnectionError::Case;
    Json settings = parsed(data);
    std::string command = PumpAgentHook::shellQuoted(script().string());
    if (const auto line = settings.find(statusLineKey); line == settings.end()) {
        settings[statusLineKey] = {{typeKey, commandType}, {commandKey, command}};
    } else {
        const std::string* const own = commandOf(*line);
        if (own == nullptr) {
            throw ConnectionError(Case::notACommand, {});
        }
        if (own->starts_with(command)) {
            throw ConnectionError(Case::missingBackup, {});
        }
        command += " " + PumpAgentHook::shellQuoted(*own);
        (*line)[commandKey] = command;
    }
    return {SettingsDocument::text(settings), std::move(command)};
}

std::string ClaudeStatusLineConnector::restored(std::string_view current,
                                                const SettingsBackup& backup) const {
    if (current == backup.installed) {
        return backup.original;
    }
    Json settings = parsed(current);
    const Json original = parsed(backup.original);
    const bool wasHeld = putBack(settings, original, backup.command);
    if (settings == original) {
        return backup.original;
    }
    return wasHeld ? SettingsDocument::text(settings) : std::string(current);
}

void ClaudeStatusLineConnector::connect() const {
    try {
        connection().connect({.script = scriptText(), .includeProject = false, .idleScript = idleScript},
                             [this](std::string_view data) { return installed(data); });
    } catch (const PumpHookSettings::Failure& error) {
        throw ConnectionError(translated(error.failure()), claudeSettingsFile(folders_));
    }
}

void ClaudeStatusLineConnector::disconnect() const {
    try {
        connection().disconnect(idleScript, [this](std::string_view current, const SettingsBackup& backup) {
            return restored(current, backup);
        });
    } catch (const PumpHookSettings::Failure& error) {
        throw ConnectionError(translated(error.failure()), claudeSettingsFile(folders_));
    }
}

std::filesystem::path claudeSettingsFile(const SupportFolders& folders) {
    return folders.home() / ".claude" / "settings.json";
}

std::filesystem::path claudeRateLimitsFile(const SupportFolders& folders) {
    return folders.deskSprites() / ClaudeRateLimits::fileName;
}

} // namespace FellowCore
