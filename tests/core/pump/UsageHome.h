#pragma once

#include "core/base/Json.h"
#include "core/pump/PumpUsageReader.h"
#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <system_error>

namespace FellowCore {

/// A moment on Wednesday, 4 March 2026, given as "09:40:00".
inline Instant wednesday(const std::string& time) {
    return instantFromIso8601("2026-03-04T" + time + "Z").value();
}

/// A line of the assistant. An empty id is left out.
struct AssistantLine {
    std::string at = "2026-03-04T09:40:00.250Z";
    std::string id = "msg_1";
    std::int64_t input = 10;
    std::int64_t output = 5;

    std::string text() const {
        const std::string named = id.empty() ? "" : R"("id":")" + id + R"(",)";
        return R"({"type":"assistant","timestamp":")" + at + R"(","message":{)" + named +
               R"("role":"assistant","usage":{"input_tokens":)" + std::to_string(input) +
               R"(,"cache_read_input_tokens":900000,"output_tokens":)" + std::to_string(output) + "}}}\n";
    }
};

inline std::string codexLine(const std::string& at, double usedPercent, const std::string& more = "") {
    return R"({"timestamp":")" + at +
           R"(","type":"event_msg","payload":{"type":"token_count","rate_limits":)" +
           R"({"primary":{"used_percent":)" + std::to_string(usedPercent) + R"(,"window_minutes":300)" +
           more + "}}}}\n";
}

/// A home folder with logs in it, and a reader of them.
class UsageHome {
public:
    UsageHome() {
        files.onCall = [this](std::string_view call) {
            ++callsOf[std::string(call)];
            if (call == failing) {
                throw std::system_error(EACCES, std::generic_category(), failing);
            }
        };
        restart();
    }

    /// A reader that starts from the cache, as after the program was started again.
    void restart() {
        reader = std::make_unique<PumpUsageReader>(
            files,
            PumpUsagePlaces{.home = folder.path(), .cacheURL = cache(), .rateLimits = folder / "limits.json"},
            Calendar::utc());
    }
    PumpUsageSnapshot refresh(Instant now = wednesday("12:00:00"),
                              const PumpPreferences& preferences = PumpPreferences()) {
        return reader->refresh(now, preferences);
    }
    std::filesystem::path cache() const { return folder / "support/usage-cache.json"; }
    std::filesystem::path claude(const std::string& name) const { return folder / ".claude/projects" / name; }
    std::filesystem::path codex(const std::string& name) const { return folder / ".codex/sessions" / name; }
    void append(const std::filesystem::path& path, std::string_view bytes) const {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
    }

    TestSupport::TemporaryFolder folder;
    std::string failing;                ///< the file operation that fails; empty for none
    std::map<std::string, int> callsOf; ///< how many file operations were made, by name
    TestSupport::FailingFileOperations files;
    std::unique_ptr<PumpUsageReader> reader;
};

} // namespace FellowCore
