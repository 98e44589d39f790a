#pragma once

#include "core/agents/PumpAgentPhase.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What the hook helper writes: one line for each event, in a file that is kept short.
struct PumpAgentLog {
    static constexpr std::string_view fileName = "agent-events.jsonl";
    /// A folder whose existence is the lock, with the holder's process id in `lockOwnerName`.
    static constexpr std::string_view lockName = "agent-events.lock";
    static constexpr std::string_view lockOwnerName = "pid";

    /// The fields of one line; all are taken as they are, so they must have passed their rules.
    struct Record {
        std::string_view agent;
        PumpAgentPhase event;
        std::string session;
        double timestamp = 0; ///< seconds since 1970, written in whole milliseconds
        std::optional<std::string> application = {};
        std::optional<std::string> cwd = {};
        std::optional<std::string> tty = {};
    };

    /// The line without its newline, or nothing when it would be longer than a line may be.
    static std::optional<std::string> line(const Record& record);

    /// The file's new bytes: of its old ones the last 199 lines that are not empty and not longer than 2048
    /// UTF-16 code units, and then the new line. A file that is longer than may be read back or is not UTF-8
    /// starts afresh.
    static std::string appended(std::string_view existing, std::string_view line);

    /// Calls with each piece between newlines, empty ones too.
    template <typename Call>
    static void forEachLine(std::string_view text, Call call) {
        for (;;) {
            const auto end = text.find('\n');
            call(text.substr(0, end));
            if (end == std::string_view::npos) {
                return;
            }
            text.remove_prefix(end + 1);
        }
    }
};

} // namespace FellowCore
