#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/agents/PumpAgentConnector.h"
#include "tests/core/agents/ConnectorHome.h"

#include <gmock/gmock.h>

#include <map>

namespace FellowCore {
namespace {

using Files = std::map<std::string, std::string>; ///< bytes by path below home

/// One thing that a connector does to a home, with what prepares the home for it.
struct Step {
    const char* name;
    std::optional<std::string> settings;
    std::function<void(FileOperations&, const SupportFolders&)> prepare;
    std::function<void(FileOperations&, const SupportFolders&)> run;
};

PumpAgentConnector hooks(FileOperations& files, const SupportFolders& folders) {
    return {files, folders, PumpProvider::claude, "/opt/fellow-hook"};
}

ClaudeStatusLineConnector line(FileOperations& files, const SupportFolders& folders) {
    return {files, folders, "/opt/fellow-hook"};
}

const std::string someSettings = R"({"z" : 1, "a" : [1]})";

const Step steps[] = {
    {"connect", someSettings, [](auto&, auto&) {},
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::included); }},
    {"connect without a file", std::nullopt, [](auto&, auto&) {},
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::included); }},
    {"connect once more", someSettings,
     [](auto& files, auto& folders) {
         hooks(files, folders).connect(PumpProjectConsent::excluded);
         hooks(files, folders).disconnect();
     },
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::included); }},
    {"other consent", someSettings,
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::excluded); },
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::included); }},
    {"disconnect", someSettings,
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::excluded); },
     [](auto& files, auto& folders) { hooks(files, folders).disconnect(); }},
    {"disconnect without a file before", std::nullopt,
     [](auto& files, auto& folders) { hooks(files, folders).connect(PumpProjectConsent::excluded); },
     [](auto& files, auto& folders) { hooks(files, folders).disconnect(); }},
    {"disconnect beside the status line", someSettings,
     [](auto& files, auto& folders) {
         hooks(files, folders).connect(PumpProjectConsent::excluded);
         line(files, folders).connect();
     },
     [](auto& files, auto& folders) { hooks(files, folders).disconnect(); }},
    {"connect the status line", someSettings, [](auto&, auto&) {},
     [](auto& files, auto& folders) { line(files, folders).connect(); }},
    {"disconnect the status line", someSettings,
     [](auto& files, auto& folders) { line(files, folders).connect(); },
     [](auto& files, auto& folders) { line(files, folders).disconnect(); }},
};

Files filesIn(const std::filesystem::path& home) {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
        if (entry.is_regular_file()) {
            files[entry.path().lexically_relative(home).string()] = bytesOf(entry.path());
        }
    }
    return files;
}

constexpr const char* settingsName = ".claude/settings.json";

std::optional<std::string> settingsIn(const Files& files) {
    const auto found = files.find(settingsName);
    return found != files.end() ? std::optional(found->second) : std::nullopt;
}

struct Attempt {
    Files before;
    Files after;
    bool isDone = false;
    std::string failed;
};

/// Runs a step in an empty home with faults from one call on, then once more without.
Attempt attempt(const std::filesystem::path& home, const Step& step, int failAt, int failures) {
    std::filesystem::remove_all(home);
    std::filesystem::create_directory(home);
    const SupportFolders folders({.home = home});
    if (step.settings) {
        writeBytes(claudeSettingsFile(folders), *step.settings);
    }
    TestSupport::FailingFileOperations real;
    real.flushes = false;
    step.prepare(real, folders);
    Attempt attempt{.before = filesIn(home), .after = {}, .failed = {}};
    TestSupport::FailingFileOperations failing;
    failing.failAt = failAt;
    failing.failures = failures;
    failing.code = ENOSPC;
    failing.flushes = false;
    try {
        step.run(failing, folders);
        attempt.isDone = true;
    } catch (const FileError&) {
    }
    attempt.failed = failing.failed;
    attempt.after = filesIn(home);

    // What failed can be done again, and undone, and then nothing of it is left in the settings.
    step.run(real, folders);
    line(real, folders).disconnect();
    hooks(real, folders).disconnect();
    EXPECT_EQ(settingsIn(filesIn(home)), step.settings);
    return attempt;
}

TEST(ConnectorFaults, LeaveTheOldSettingsOrTheNewAndNothingBeside) {
    const TestSupport::TemporaryFolder folder;
    for (const Step& step : steps) {
        const Attempt plain = attempt(folder / "home", step, 0, 0);
        ASSERT_TRUE(plain.isDone);
        std::set<std::string> met;
        for (const int failures : {1, 1000}) {
            for (int failAt = 1;; ++failAt) {
                const Attempt faulty = attempt(folder / "home", step, failAt, failures);
                SCOPED_TRACE(std::string(step.name) + ", failing at " + faulty.failed + " " +
                             std::to_string(failAt) + (failures > 1 ? " and ever after" : ""));
                if (faulty.failed.empty()) {
                    break;
                }
                met.insert(faulty.failed);
                const auto settings = settingsIn(faulty.after);
                EXPECT_TRUE(settings == settingsIn(plain.before) || settings == settingsIn(plain.after));
                const bool isConnecting = std::string_view(step.name).find("disconnect") == std::string::npos;
                if (isConnecting && !faulty.isDone) {
                    EXPECT_EQ(settings, settingsIn(plain.before));
                }
                if (isConnecting && !faulty.isDone && failures == 1 && faulty.failed != "remove") {
                    EXPECT_EQ(faulty.after, faulty.before) << "something is left behind, or gone";
                }
                for (const auto& [name, bytes] : faulty.after) {
                    EXPECT_TRUE(failures > 1 || name.find(".deskfellow-") == std::string::npos ||
                                name.ends_with(".deskfellow-backup"))
                        << name;
                }
            }
        }
        EXPECT_TRUE(met.contains("rename") && met.contains("write") && met.contains("openForReading"));
    }
}

} // namespace
} // namespace FellowCore
