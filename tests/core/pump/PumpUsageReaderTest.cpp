#include "core/pump/PumpUsageReader.h"

#include "tests/core/pump/UsageHome.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <limits>

namespace FellowCore {
namespace {

using TestSupport::bytesOf;
using TestSupport::writeBytes;
namespace fs = std::filesystem;

std::string assistant(const std::string& id, std::int64_t input = 10,
                      const std::string& at = "2026-03-04T09:40:00Z") {
    return AssistantLine{.at = at, .id = id, .input = input, .output = 0}.text();
}

TEST(PumpUsageReader, CountsTheMessagesOfTheAssistantAndNothingElse) {
    struct Case {
        const char* fault;
        std::string line;
        std::int64_t tokens;
    };
    const auto with = [](const std::string& type, const std::string& message,
                         const char* at = "2026-03-04T09:40:00Z") {
        return R"({"type":)" + type + R"(,"timestamp":")" + at + R"(","message":)" + message + "}\n";
    };
    const std::string good = R"("assistant")";
    const std::string usage = R"({"usage":{"input_tokens":7,"output_tokens":3}})";
    const Case cases[] = {
        {"input and output are not added", with(good, usage), 10},
        {"the caches count",
         with(good, R"({"usage":{"cache_creation_input_tokens":5,"cache_read_input_tokens":9}})"), 0},
        {"a user's line counts", with(R"("user")", usage), 0},
        {"a type that is no string counts", with("1", usage), 0},
        {"another role counts", with(good, R"({"role":"user","usage":{"input_tokens":7}})"), 0},
        {"a role that is no string counts", with(good, R"({"role":1,"usage":{"input_tokens":7}})"), 0},
        {"a negative counter is read as none",
         with(good, R"({"usage":{"input_tokens":7,"output_tokens":-1}})"), 0},
        {"a string is read as a number", with(good, R"({"usage":{"input_tokens":7,"output_tokens":"3"}})"),
         0},
        {"other ways to write a whole number are lost",
         with(good, R"({"usage":{"input_tokens":1e3,"output_tokens":2.0}})"), 1002},
        {"fractions of a second are not understood", with(good, usage, "2026-03-04T09:40:00.123456Z"), 10},
        {"an offset is not understood", with(good, usage, "2026-03-04T15:10:00+05:30"), 10},
        {"a line from the future counts", with(good, usage, "2026-03-04T12:00:01Z"), 0},
        {"a line from just now is lost", with(good, usage, "2026-03-04T12:00:00Z"), 10},
        {"a line from before 1970 counts", with(good, usage, "1969-12-31T23:59:59Z"), 0},
        {"a date without a time counts", with(good, usage, "2026-03-04"), 0},
        {"a sum beyond 64 bits wraps",
         with(good, R"({"usage":{"input_tokens":9223372036854775807,"output_tokens":9}})"), INT64_MAX},
    };
    for (const Case& one : cases) {
        UsageHome home;
        home.append(home.claude("p/a.jsonl"), one.line);
        const PumpUsageSnapshot snapshot = home.refresh();
        EXPECT_EQ(snapshot.claude.weekTokens, one.tokens) << one.fault;
        EXPECT_EQ(snapshot.claudeSource, PumpSourceState::ready) << one.fault;
    }
}

TEST(PumpUsageReader, OneMessageCountsOnceWhereverItStands) {
    UsageHome home;
    home.append(home.claude("p/a.jsonl"), AssistantLine{.input = 1, .output = 5}.text() +
                                              AssistantLine{.input = 4, .output = 2}.text());
    home.append(home.claude("q/b.jsonl"), AssistantLine{.input = 2, .output = 9}.text() +
                                              AssistantLine{.id = "", .input = 100, .output = 0}.text() +
                                              AssistantLine{.id = "", .input = 100, .output = 0}.text());
    EXPECT_EQ(home.refresh().claude.weekTokens, 4 + 9 + 200) << "the largest of each, and each nameless line";
    fs::remove(home.claude("q/b.jsonl"));
    EXPECT_EQ(home.refresh().claude.weekTokens, 4 + 5) << "what the other file says still stands";
    fs::remove(home.claude("p/a.jsonl"));
    const PumpUsageSnapshot none = home.refresh();
    EXPECT_EQ(none.claude.weekTokens, 0);
    EXPECT_FALSE(none.claude.hasLogs);
    EXPECT_EQ(none.claudeSource, PumpSourceState::missing);
}

TEST(PumpUsageReader, ALineCountsOnceItIsWhole) {
    UsageHome home;
    const std::string line = assistant("one");
    home.append(home.claude("p/a.jsonl"), assistant("zero") + line.substr(0, 40));
    EXPECT_EQ(home.refresh().claudeSource, PumpSourceState::partial);
    home.append(home.claude("p/a.jsonl"), line.substr(40, line.size() - 41));
    EXPECT_EQ(home.refresh().claude.weekTokens, 10);
    home.restart();
    home.append(home.claude("p/a.jsonl"), "\n");
    const PumpUsageSnapshot whole = home.refresh();
    EXPECT_EQ(whole.claude.weekTokens, 20) << "a restart loses the half line";
    EXPECT_EQ(whole.claudeSource, PumpSourceState::ready);
}

TEST(PumpUsageReader, CorruptLinesShowAndSpoilNoOthers) {
    for (const std::string& bad : {std::string("not json"), std::string("[1]"), std::string(100'000, '\0'),
                                   std::string(R"({"type":"assistant")"), std::string(" ")}) {
        UsageHome home;
        home.append(home.claude("p/a.jsonl"), assistant("one") + bad + "\n\n" + assistant("two"));
        const PumpUsageSnapshot snapshot = home.refresh();
        EXPECT_EQ(snapshot.claude.weekTokens, 20) << bad.substr(0, 20);
        EXPECT_EQ(snapshot.claudeSource, PumpSourceState::partial) << bad.substr(0, 20);
        home.restart();
        EXPECT_EQ(home.refresh().claudeSource, PumpSourceState::partial) << "forgotten over a restart";
    }
}

TEST(PumpUsageReader, AFileThatIsNotTheSameAnyMoreIsReadAnew) {
    UsageHome home;
    const fs::path log = home.claude("p/a.jsonl");
    home.append(log, assistant("one") + assistant("two"));
    EXPECT_EQ(home.refresh().claude.weekTokens, 20);
    fs::resize_file(log, assistant("one").size());
    EXPECT_EQ(home.refresh().claude.weekTokens, 10) << "cut short";
    writeBytes(home.claude("p/new"), assistant("x") + assistant("y") + assistant("z"));
    fs::rename(home.claude("p/new"), log);
    EXPECT_EQ(home.refresh().claude.weekTokens, 30) << "replaced by a longer one";
    home.restart();
    writeBytes(home.claude("p/new"), assistant("x") + assistant("y") + assistant("z") + assistant("u"));
    fs::rename(home.claude("p/new"), log);
    EXPECT_EQ(home.refresh().claude.weekTokens, 40) << "replaced while the program was not running";
}

TEST(PumpUsageReader, ReadsWhatWasAppendedAndNothingTwice) {
    UsageHome home;
    for (int number = 0; number < 40; ++number) {
        home.append(home.claude("p" + std::to_string(number % 7) + "/" + std::to_string(number) + ".jsonl"),
                    assistant(std::to_string(number)));
    }
    home.refresh();
    home.callsOf.clear();
    home.files.bytesRead = 0;
    const PumpUsageSnapshot same = home.refresh();
    EXPECT_EQ(same.claude.weekTokens, 400);
    EXPECT_EQ(home.callsOf["openForReading"], 0);
    EXPECT_EQ(home.callsOf["createExclusively"], 0) << "the cache was written though nothing changed";
    home.append(home.claude("p3/3.jsonl"), assistant("new"));
    EXPECT_EQ(home.refresh().claude.weekTokens, 410);
    EXPECT_EQ(home.callsOf["openForReading"], 1);
    EXPECT_EQ(home.files.bytesRead, assistant("new").size());
    home.restart();
    home.files.bytesRead = 0;
    EXPECT_EQ(home.refresh().claude.weekTokens, 410);
    EXPECT_EQ(home.files.bytesRead, 0U) << "the cache was not used";
}

TEST(PumpUsageReader, ReadsNoMoreThanItsBudgetAndTheNewestFirst) {
    UsageHome home;
    const std::string filling = R"({"type":"user","text":")" + std::string(1'000'000, '.') + "\"}\n";
    for (const char* const name : {"p/old.jsonl", "p/new.jsonl"}) {
        for (int times = 0; times < 6; ++times) {
            home.append(home.claude(name), filling);
        }
        home.append(home.claude(name), assistant(name, name == std::string("p/old.jsonl") ? 1 : 100));
    }
    fs::last_write_time(home.claude("p/old.jsonl"), fs::file_time_type::clock::now() - std::chrono::hours(1));
    const PumpUsageSnapshot first = home.refresh();
    EXPECT_EQ(home.files.bytesRead, static_cast<std::size_t>(PumpUsageReader::maximumScanBytes));
    EXPECT_TRUE(first.isLoading);
    EXPECT_EQ(first.claudeSource, PumpSourceState::loading);
    EXPECT_EQ(first.claude.weekTokens, 100);
    home.restart(); // in the middle of a line
    const PumpUsageSnapshot second = home.refresh();
    EXPECT_FALSE(second.isLoading);
    EXPECT_EQ(second.claudeSource, PumpSourceState::ready);
    EXPECT_EQ(second.claude.weekTokens, 101);
}

TEST(PumpUsageReader, LooksAtRegularFilesInsideItsFolderOnly) {
    UsageHome home;
    const std::string line = assistant("one");
    home.append(home.claude("p/a.jsonl"), line);
    home.append(home.folder / "outside/secret.jsonl", assistant("out"));
    home.append(home.claude("p/deeper/b.jsonl"), assistant("deep"));
    home.append(home.claude("p/c.json"), assistant("json"));
    home.append(home.claude("top.jsonl"), assistant("top"));
    home.append(home.claude("p/.jsonl"), assistant("nameless"));
    fs::create_directories(home.claude("p/folder.jsonl"));
    ASSERT_EQ(::mkfifo(home.claude("p/pipe.jsonl").c_str(), 0600), 0);
    fs::create_symlink(home.folder / "outside/secret.jsonl", home.claude("p/link.jsonl"));
    fs::create_symlink(home.folder / "outside", home.claude("out"));
    fs::create_symlink("nowhere", home.claude("p/dangling.jsonl"));
    fs::create_symlink("circle.jsonl", home.claude("p/circle.jsonl"));
    fs::create_symlink("p", home.claude("again")); // the same file by two ways
    fs::create_symlink("../q/real.jsonl", home.claude("p/inside.jsonl"));
    home.append(home.claude("q/real.jsonl"), assistant("", 1000)); // which would count twice
    const PumpUsageSnapshot snapshot = home.refresh();
    EXPECT_EQ(snapshot.claude.weekTokens, 1010);
    EXPECT_EQ(snapshot.claudeSource, PumpSourceState::ready);
}

TEST(PumpUsageReader, AFileOfHolesIsReadPieceByPiece) {
    UsageHome home;
    home.append(home.claude("p/sparse.jsonl"), assistant("one"));
    fs::resize_file(home.claude("p/sparse.jsonl"), std::uintmax_t{4} << 30);
    for (int refresh = 1; refresh <= 3; ++refresh) {
        const PumpUsageSnapshot snapshot = home.refresh();
        EXPECT_TRUE(snapshot.isLoading);
        EXPECT_EQ(snapshot.claude.weekTokens, 10);
        EXPECT_EQ(home.files.bytesRead,
                  static_cast<std::size_t>(refresh * PumpUsageReader::maximumScanBytes));
    }
}

TEST(PumpUsageReader, WhatCannotBeReadShowsAndIsTriedAgain) {
    for (const char* const call : {"openForReading", "readAt", "list", "status"}) {
        UsageHome home;
        home.append(home.claude("p/a.jsonl"), assistant("one"));
        home.append(home.codex("rollout-1.jsonl"), codexLine("2026-03-04T09:00:00Z", 40));
        home.failing = call;
        const PumpUsageSnapshot failed = home.refresh();
        EXPECT_EQ(failed.claudeSource, PumpSourceState::unreadable) << call;
        EXPECT_EQ(failed.codexSource, PumpSourceState::unreadable) << call;
        EXPECT_FALSE(failed.isLoading) << call;
        EXPECT_FALSE(failed.claude.hasLogs) << call;
        home.failing.clear();
        const PumpUsageSnapshot better = home.refresh();
        EXPECT_EQ(better.claudeSource, PumpSourceState::ready) << call;
        EXPECT_EQ(better.claude.weekTokens, 10) << call;
        EXPECT_EQ(better.codex.value().usedPercent, 40) << call;
    }
}

TEST(PumpUsageReader, TakesTheNewestLimitOfCodex) {
    UsageHome home;
    home.append(home.codex("2026/03/04/rollout-b.jsonl"),
                codexLine("2026-03-04T09:00:00Z", 40, R"(,"resets_at":1772618400)") +
                    codexLine("2026-03-04T08:00:00Z", 10) + codexLine("2026-03-04T12:00:01Z", 99) +
                    codexLine("2026-03-04T10:00:00Z", 101) +
                    R"({"timestamp":"2026-03-04T10:00:00Z","type":"event_msg","payload":{"type":"other"}})" +
                    "\n");
    home.append(home.codex("2026/.hidden/rollout-c.jsonl"), codexLine("2026-03-04T11:00:00Z", 70));
    home.append(home.codex("2026/03/04/notes.jsonl"), codexLine("2026-03-04T11:00:00Z", 80));
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(home.codex("2026/03/04/rollout-b.jsonl"), now - std::chrono::hours(1));
    const PumpUsageSnapshot first = home.refresh();
    EXPECT_EQ(first.codexSource, PumpSourceState::ready);
    EXPECT_EQ(first.codex.value().usedPercent, 40);
    EXPECT_EQ(first.codex->resetsAt, wednesday("10:00:00"));
    EXPECT_EQ(first.codex->observedAt, wednesday("09:00:00"));

    home.append(home.codex("2026/03/05/rollout-d.jsonl"),
                codexLine("2026-03-04T09:00:00Z", 50, R"(,"resets_at":-1)"));
    home.restart();
    const PumpUsageSnapshot later = home.refresh();
    EXPECT_EQ(later.codex.value().usedPercent, 50) << "one as new replaces it";
    EXPECT_EQ(later.codex->resetsAt, std::nullopt);
    fs::remove(home.codex("2026/03/05/rollout-d.jsonl"));
    EXPECT_EQ(home.refresh().codex, std::nullopt) << "its file is gone";
}

TEST(PumpUsageReader, ASampleFromTheFutureYieldsToAny) {
    UsageHome home;
    home.append(home.codex("rollout-a.jsonl"), codexLine("2026-03-04T11:00:00Z", 40));
    home.refresh(wednesday("12:00:00"));
    home.append(home.codex("rollout-a.jsonl"), codexLine("2026-03-04T08:00:00Z", 20));
    EXPECT_EQ(home.refresh(wednesday("09:00:00")).codex.value().usedPercent, 20) << "the clock was put back";
}

TEST(PumpUsageReader, AClockThatJumpsLosesNoLogs) {
    UsageHome home;
    home.append(home.claude("p/a.jsonl"), assistant("one"));
    EXPECT_EQ(home.refresh().claude.weekTokens, 10);
    const PumpUsageSnapshot early = home.refresh(Instant::fromUnix(0));
    EXPECT_EQ(early.claude, PumpClaudeUsage()) << "what is to come is shown";
    EXPECT_EQ(home.refresh().claude.weekTokens, 10) << "going back lost it";
    for (const Seconds odd : {253402300800.0, 1e18, std::numeric_limits<double>::infinity(), std::nan("")}) {
        home.restart();
        EXPECT_EQ(home.refresh(Instant::fromUnix(odd)).claude.blockStart, std::nullopt) << odd;
    }
    EXPECT_TRUE(home.refresh().claude.hasLogs) << "the hours of what was pruned are gone";
}

TEST(PumpUsageReader, TheStatusLinesReadingReplacesTheEstimate) {
    UsageHome home;
    home.append(home.claude("p/a.jsonl"), assistant("one") + "half");
    writeBytes(
        home.folder / "limits.json",
        R"({"five_hour":{"used_percentage":61.5,"resets_at":1772629200},"seven_day":{"used_percentage":12}})");
    const PumpUsageSnapshot exact = home.refresh(); // it resets at 13:00
    EXPECT_TRUE(exact.claude.isExact());
    EXPECT_EQ(exact.claude.usedPercent, 61.5);
    EXPECT_EQ(exact.claudeSource, PumpSourceState::ready);
    home.callsOf.clear();
    EXPECT_TRUE(home.refresh().claude.isExact());
    EXPECT_EQ(home.callsOf["openForReading"], 0) << "the same file was read again";
    const PumpUsageSnapshot estimate = home.refresh(wednesday("13:00:00"));
    EXPECT_FALSE(estimate.claude.isExact());
    EXPECT_EQ(estimate.claude.weekTokens, 10);
    EXPECT_EQ(estimate.claudeSource, PumpSourceState::partial);
    writeBytes(home.folder / "limits.json", R"({"five_hour":{"used_percentage":1,"resets_at":1772636400}})");
    EXPECT_EQ(home.refresh(wednesday("13:00:00")).claude.usedPercent, 1);
    fs::remove(home.folder / "limits.json");
    EXPECT_FALSE(home.refresh().claude.isExact());
}

TEST(PumpUsageReader, TheBudgetIsThePlansOrTheUsersWithinBounds) {
    struct Case {
        const char* fault;
        PumpPlan plan;
        std::optional<std::int64_t> budget;
        double usedPercent;
    };
    const Case cases[] = {
        {"no budget", PumpPlan::pro, std::nullopt, 100.0},
        {"a budget of nothing divides by it", PumpPlan::max5x, 0, 20.0},
        {"a negative budget", PumpPlan::max20x, -5, 5.0},
        {"the user's budget is not used", PumpPlan::pro, 22'000, 200.0},
        {"a budget without end", PumpPlan::pro, INT64_MAX, 0.0044},
    };
    for (const Case& one : cases) {
        UsageHome home;
        home.append(home.claude("p/a.jsonl"), assistant("one", 44'000));
        const auto snapshot = home.refresh(wednesday("12:00:00"), PumpPreferences(one.plan, one.budget));
        EXPECT_DOUBLE_EQ(snapshot.claude.usedPercent, one.usedPercent) << one.fault;
    }
}

TEST(PumpUsageReader, ACacheThatIsNotRightIsIgnoredAsAWhole) {
    UsageHome home;
    home.append(home.claude("p/a.jsonl"), assistant("one"));
    home.append(home.codex("rollout-a.jsonl"), codexLine("2026-03-04T09:00:00Z", 40));
    home.refresh();
    const std::string good = bytesOf(home.cache());
    EXPECT_EQ(good.find("msg"), std::string::npos);
    EXPECT_EQ(fs::status(home.cache()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(home.cache().parent_path()).permissions(), fs::perms::owner_all);
    struct Case {
        const char* fault;
        std::string from;
        std::string to;
    };
    const Case cases[] = {
        {"another version", R"("version":2)", R"("version":1)"},
        {"a negative counter", R"("cacheCreation":0)", R"("cacheCreation":-1)"},
        {"a counter that is no whole number", R"("input":10)", R"("input":10.5)"},
        {"a date before 1970", R"({"at":)", R"({"at":-9)"},
        {"a percentage beyond 100", R"("usedPercent":40.0)", R"("usedPercent":140.0)"},
        {"a window of no length", R"("windowMinutes":300.0)", R"("windowMinutes":0)"},
        {"an identity that is none", R"("identity":")", R"("identity":"x)"},
        {"a record of the wrong type", R"("records":{)", R"("records":{"x":1,)"},
        {"a file cut short", "}}", ""},
    };
    for (const Case& one : cases) {
        std::string bad = good;
        const std::size_t at = bad.find(one.from);
        ASSERT_NE(at, std::string::npos) << one.fault;
        bad.replace(at, one.from.size(), one.to);
        writeBytes(home.cache(), bad);
        home.files.bytesRead = 0;
        home.restart();
        EXPECT_EQ(home.refresh().claude.weekTokens, 10) << one.fault;
        EXPECT_GT(home.files.bytesRead, 0U) << one.fault << ": the cache was believed";
    }
    writeBytes(home.cache(), good + std::string(PumpUsageCache::sizeLimit, ' '));
    home.files.bytesRead = 0;
    home.restart();
    home.refresh();
    EXPECT_GT(home.files.bytesRead, 0U) << "a cache beyond the limit was believed";
}

TEST(PumpUsageReader, ACacheThatCannotBeWrittenCostsNothingElse) {
    UsageHome home;
    home.append(home.claude("p/a.jsonl"), assistant("one"));
    home.failing = "createExclusively";
    EXPECT_EQ(home.refresh().claude.weekTokens, 10);
    EXPECT_FALSE(fs::exists(home.cache()));
    home.failing.clear();
    home.refresh();
    EXPECT_TRUE(fs::exists(home.cache())) << "it is not tried again";
}

TEST(PumpUsageReader, NamesThatAreNotUtf8AreReadAnewAfterARestart) {
    UsageHome home;
    home.append(home.claude("p/\xff.jsonl"), assistant("one"));
    home.append(home.claude("p/a\"b\\.jsonl"), assistant("two"));
    EXPECT_EQ(home.refresh().claude.weekTokens, 20);
    home.restart();
    home.files.bytesRead = 0;
    EXPECT_EQ(home.refresh().claude.weekTokens, 20);
    EXPECT_EQ(home.files.bytesRead, assistant("one").size());
}

} // namespace
} // namespace FellowCore
