#pragma once

#include "core/agents/PumpAgentPhase.h"
#include "core/base/Instant.h"
#include "core/base/SupportFolders.h"
#include "core/pump/PumpProvider.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// One line of the agents' event file: what one session of one agent did, and when.
struct PumpAgentEvent {
    PumpProvider agent;
    PumpAgentPhase event;
    std::string sessionID;
    std::optional<std::string> cwd = {};              ///< an absolute folder, or a project's bare name
    std::optional<std::string> tty = {};              ///< the device path of the session's terminal
    std::optional<std::string> terminalBundleID = {}; ///< the application that holds the session
    double timestamp = 0;                             ///< seconds since 1970

    /// Reads one line of at most 2048 bytes. Nothing when it is no object or a required field (agent, event,
    /// session id, time) is absent or not valid; an optional field that is not valid is left out.
    static std::optional<PumpAgentEvent> parse(std::string_view line);
    /// Reads line by line, in order, and skips what `parse` does not take.
    static std::vector<PumpAgentEvent> parseLines(std::string_view text);

    /// What stands for the session: "claude:0f3a…".
    std::string key() const;
    /// "Claude is working", "Codex needs you", "Claude finished".
    std::string phrase() const;
    /// The last component of the folder.
    std::optional<std::string> project() const;
    /// The folder, when it is an absolute path.
    std::optional<std::string> projectDirectory() const;
    /// The same event without the folder and the terminal.
    PumpAgentEvent excludingProjectMetadata() const;
    /// Seconds from the event to `at`; negative for one from the future.
    Seconds age(Instant at) const { return at.toUnix() - timestamp; }

    friend bool operator==(const PumpAgentEvent&, const PumpAgentEvent&) = default;
};

/// The file that the agents' hooks add to, and the folder in which they lock it.
std::filesystem::path agentEventsFile(const SupportFolders& folders);

/// The events in the end of a file: all of `tail` when it is the whole file, otherwise without its first
/// line, which may have been cut.
std::vector<PumpAgentEvent> agentEventsInTail(std::string_view tail, bool isWholeFile);

} // namespace FellowCore
