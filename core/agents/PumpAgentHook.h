#pragma once

#include "core/pump/PumpProvider.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace FellowCore {

/// Whether a session's folder and terminal may be recorded.
enum class PumpProjectConsent { excluded, included };

/// The helper script that an agent runs on its lifecycle events. It adds one line to the events file and
/// never changes what the agent does: bounded in time and size, silent, always successful.
struct PumpAgentHook {
    /// What replaces the helper at disconnecting: sessions that still run may have kept its command.
    static constexpr std::string_view idleScript = "#!/bin/sh\nexit 0\n";

    /// What the Linux helper needs to know.
    struct LinuxPlaces {
        std::filesystem::path program;       ///< fellow-hook
        std::filesystem::path supportFolder; ///< where the events file and its lock stand
    };

    /// The helper for a system with Apple's scripting.
    static std::string script(PumpProvider agent, PumpProjectConsent consent);
    /// The helper for Linux, which does nothing when the program is gone.
    static std::string script(PumpProvider agent, PumpProjectConsent consent, const LinuxPlaces& places);

    /// One word of a POSIX shell command, in single quotes, with each single quote in it as '"'"'.
    static std::string shellQuoted(std::string_view text);
};

} // namespace FellowCore
