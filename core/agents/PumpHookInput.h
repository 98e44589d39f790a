#pragma once

#include "core/agents/PumpAgentPhase.h"
#include "core/pump/PumpProvider.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What an agent tells a hook about itself, as far as anything of it is ever looked at: no prompt, no
/// message, no tool's input, no transcript.
struct PumpHookInput {
    static constexpr std::size_t maximumBytes = 1048576; ///< of a document; a longer one is not read

    std::optional<std::string> hookEventName;
    std::optional<std::string> notificationType;
    std::optional<std::string> sessionID;
    std::optional<std::string> cwd;

    /// The fields of one JSON object; nothing when the text is no JSON object or too long. A field that is no
    /// string counts as absent, and of fields with the same key the last one counts.
    static std::optional<PumpHookInput> parse(std::string_view text);

    /// What the event means for the session; nothing for an event that says nothing about it.
    std::optional<PumpAgentPhase> phase(PumpProvider agent) const;
    /// The folder, when it may be recorded: an absolute path of at most 1024 bytes with no control
    /// characters.
    std::optional<std::string> projectDirectory() const;
};

} // namespace FellowCore
