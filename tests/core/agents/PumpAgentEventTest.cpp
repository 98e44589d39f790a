#include "core/agents/PumpAgentEvent.h"

#include "core/agents/PumpAgentFields.h"
#include "core/agents/PumpAgentLog.h"
#include "tests/core/agents/AgentScript.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;

constexpr const char* whole =
    R"({"agent":"codex","event":"needs_you","session_id":"s-1_.:Z","ts":1800000000.25,)"
    R"("terminal_bundle_id":"org.kde.konsole.desktop","cwd":"/home/u/my project/","tty":"/dev/pts/3"})";

std::string line(const std::string& fields) {
    return R"({"agent":"claude","event":"done","session_id":"s","ts":1)" + fields + "}";
}

std::string with(std::string text, const std::string& old, const std::string& replacement) {
    return text.replace(text.find(old), old.size(), replacement);
}

TEST(PumpAgentEvent, ReadsEveryField) {
    const auto event = PumpAgentEvent::parse(whole).value();
    EXPECT_EQ(event.agent, PumpProvider::codex);
    EXPECT_EQ(event.event, PumpAgentPhase::needsYou);
    EXPECT_EQ(event.timestamp, 1800000000.25);
    EXPECT_EQ(event.terminalBundleID, "org.kde.konsole.desktop");
    EXPECT_EQ(event.tty, "/dev/pts/3");
    EXPECT_EQ(event.key(), "codex:s-1_.:Z");
    EXPECT_EQ(event.phrase(), "Codex needs you");
    EXPECT_EQ(event.project(), "my project");
    EXPECT_EQ(event.projectDirectory(), "/home/u/my project/");
    const auto bare = event.excludingProjectMetadata();
    EXPECT_FALSE(bare.cwd || bare.tty || bare.project());
    EXPECT_EQ(bare.terminalBundleID, event.terminalBundleID);
}

TEST(PumpAgentEvent, ALineWithoutAValidRequiredFieldTellsNothing) {
    const std::string good = line("");
    ASSERT_TRUE(PumpAgentEvent::parse(good));
    const struct {
        const char* fault;
        std::string line;
    } cases[] = {
        {"empty", ""},
        {"half a line", good.substr(0, good.size() - 1)},
        {"no object", "[" + good + "]"},
        {"two objects", good + good},
        {"an unknown agent", with(good, "claude", "Claude")},
        {"an unknown phase", with(good, "done", "needsYou")},
        {"an agent that is a number", with(good, "\"claude\"", "1")},
        {"no session", with(good, "session_id", "session")},
        {"an empty session", with(good, "\"s\"", "\"\"")},
        {"a space in a session", with(good, "\"s\"", "\"s s\"")},
        {"a letter beyond ASCII", with(good, "\"s\"", "\"\u00e9\"")},
        {"a session of 129", with(good, "\"s\"", "\"" + std::string(129, 'a') + "\"")},
        {"a time in quotes", with(good, "\"ts\":1", "\"ts\":\"1\"")},
        {"a time before 1970", with(good, "\"ts\":1", "\"ts\":-0.5")},
        {"a time beyond doubles", with(good, "\"ts\":1", "\"ts\":1e999")},
        {"no time", with(good, "\"ts\":1", "\"tz\":1")},
        {"2049 bytes", good + std::string(2049 - good.size(), ' ')},
        {"nested too deeply", line(",\"x\":" + std::string(900, '[') + std::string(900, ']'))},
        {"not UTF-8", line(",\"x\":\"\xff\"")},
    };
    for (const auto& row : cases) {
        EXPECT_FALSE(PumpAgentEvent::parse(row.line)) << row.fault;
    }
    EXPECT_TRUE(PumpAgentEvent::parse(good + std::string(2048 - good.size(), ' ')));
    EXPECT_TRUE(PumpAgentEvent::parse(with(good, "\"s\"", "\"" + std::string(128, 'a') + "\"")));
    EXPECT_EQ(PumpAgentEvent::parse(line(",\"extra\":{}"))->sessionID, "s");
}

TEST(PumpAgentEvent, ABadOptionalFieldIsLeftOutAndTheRestKept) {
    const struct {
        const char* fault;
        std::string fields;
    } cases[] = {
        {"a folder with a newline", R"(,"cwd":"/a\nb")"},
        {"a folder with a control character of two bytes", R"(,"cwd":"/a\u0085b")"},
        {"a folder that is a number", R"(,"cwd":7)"},
        {"a relative path", R"(,"cwd":"a/b")"},
        {"a folder of 1025 bytes", ",\"cwd\":\"/" + std::string(1024, 'a') + "\""},
        {"a terminal with a command behind it", R"(,"tty":"/dev/tty1; rm")"},
        {"a terminal elsewhere", R"(,"tty":"/dev/pts/../sda")"},
        {"an application without a full stop", R"(,"terminal_bundle_id":"konsole")"},
        {"an application with a slash", R"(,"terminal_bundle_id":"a/b.desktop")"},
        {"an application of 161", ",\"terminal_bundle_id\":\"." + std::string(160, 'a') + "\""},
        {"nulls", R"(,"cwd":null,"tty":null,"terminal_bundle_id":null)"},
    };
    for (const auto& row : cases) {
        const auto event = PumpAgentEvent::parse(line(row.fields));
        ASSERT_TRUE(event) << row.fault;
        EXPECT_FALSE(event->cwd || event->tty || event->terminalBundleID) << row.fault;
    }
}

TEST(PumpAgentEvent, ProjectIsTheLastComponent) {
    const struct {
        const char* fault;
        std::optional<std::string> cwd;
        std::optional<std::string> project;
        std::optional<std::string> folder;
    } cases[] = {
        {"none", std::nullopt, std::nullopt, std::nullopt},
        {"a trailing slash is no component", "/a/b//", "b", "/a/b//"},
        {"the root has a name too", "/", "/", "/"},
        {"a bare name is no folder", "proj", "proj", std::nullopt},
    };
    for (const auto& row : cases) {
        auto event = agentEvent("s", PumpAgentPhase::done, 0);
        event.cwd = row.cwd;
        EXPECT_EQ(event.project(), row.project) << row.fault;
        EXPECT_EQ(event.projectDirectory(), row.folder) << row.fault;
    }
}

TEST(PumpAgentEvent, ReadsLinesAndLeavesOutACutOne) {
    const std::string first = with(line(""), "\"s\"", "\"first\"");
    const std::string text = first + "\r\n\nrubbish\n\xff\xfe\n" + line("") + "\n" + std::string(3000, 'x');
    const auto session = [](const char* id) { return Field(&PumpAgentEvent::sessionID, id); };
    EXPECT_THAT(PumpAgentEvent::parseLines(text), ElementsAre(session("first"), session("s")));
    EXPECT_THAT(agentEventsInTail(text, true), ElementsAre(session("first"), session("s")));
    EXPECT_THAT(agentEventsInTail(text, false), ElementsAre(session("s")));
    EXPECT_THAT(agentEventsInTail(first, false), ElementsAre());
}

TEST(PumpAgentLog, WritesWhatIsReadBack) {
    PumpAgentLog::Record record{.agent = "claude",
                                .event = PumpAgentPhase::needsYou,
                                .session = "s",
                                .timestamp = 1800000000.1239,
                                .application = "code.desktop",
                                .cwd = "/a \"quoted\" \u00e9",
                                .tty = "/dev/tty1"};
    const auto event = PumpAgentEvent::parse(PumpAgentLog::line(record).value()).value();
    EXPECT_EQ(event.timestamp, 1800000000.123);
    EXPECT_EQ(event.cwd, record.cwd);
    EXPECT_EQ(event.tty, record.tty);
    EXPECT_EQ(event.terminalBundleID, record.application);
    record.cwd = "/" + std::string(1023, '\\');
    EXPECT_FALSE(PumpAgentLog::line(record)) << "a line may not grow longer than what is read";
}

TEST(PumpAgentLog, KeepsTheLast199OldLines) {
    const std::string emoji = "\U0001F600";
    const struct {
        const char* fault;
        std::string before;
        std::string after;
    } cases[] = {
        {"an empty file", "", "new\n"},
        {"the last newline is missing", "a\nb", "a\nb\nnew\n"},
        {"empty lines", "\n\na\n\n", "a\nnew\n"},
        {"a line of 2049 letters", std::string(2049, 'a') + "\nb\n", "b\nnew\n"},
        {"2048 letters of two bytes",
         [] {
             std::string text;
             for (int count = 0; count < 2048; ++count) {
                 text += "\u00e9";
             }
             return text + "\n";
         }(),
         ""},
        {"1025 signs of two units",
         [&] {
             std::string text;
             for (int count = 0; count < 1025; ++count) {
                 text += emoji;
             }
             return text + "\n";
         }(),
         "new\n"},
        {"not UTF-8", "a\n\xc3(\n", "new\n"},
        {"a surrogate in UTF-8", "a\n\xed\xa0\x80\n", "new\n"},
        {"cut inside a sign", "a\n\xf0\x9f\x98", "new\n"},
        {"an overlong slash", "a\n\xc0\xaf\n", "new\n"},
        {"too long to be read back", std::string(PumpAgentFields::maximumFileBytes + 1, '\n'), "new\n"},
    };
    for (const auto& row : cases) {
        const std::string expected = row.after.empty() ? row.before + "new\n" : row.after;
        EXPECT_EQ(PumpAgentLog::appended(row.before, "new"), expected) << row.fault;
    }
    std::string text;
    for (int count = 1; count <= 205; ++count) {
        text = PumpAgentLog::appended(text, std::to_string(count));
    }
    EXPECT_EQ(std::ranges::count(text, '\n'), 200);
    EXPECT_TRUE(text.starts_with("6\n7\n") && text.ends_with("\n204\n205\n"));
}

} // namespace
} // namespace FellowCore
