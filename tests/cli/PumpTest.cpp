#include "tests/cli/RunFellow.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <string>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
using nlohmann::json;
using ::testing::HasSubstr;

/// A home folder of its own, in which the real program runs.
class Pump : public ::testing::Test {
protected:
    Answer fellow(const std::string& words) const {
        return runFellow(words + " --home '" + home.path().string() + "'");
    }
    void writeLogs() const {
        TestSupport::writeBytes(
            home / ".claude/projects/p/s.jsonl",
            R"({"type":"assistant","timestamp":"2026-03-03T09:40:00Z","message":{"id":"m","role":"assistant","usage":{"input_tokens":4000,"output_tokens":400}}})"
            "\n");
        TestSupport::writeBytes(
            home / ".codex/sessions/rollout-1.jsonl",
            R"({"type":"event_msg","timestamp":"2026-03-03T09:50:00Z","payload":{"type":"token_count","rate_limits":{"primary":{"used_percent":45.5,"window_minutes":300,"resets_at":1772537400}}}})"
            "\n");
    }
    void writeEvents() const {
        const std::filesystem::path support = home / ".local/share/Deskfellow";
        TestSupport::writeBytes(support / "pump-claude-hooks-backup.json", "{}");
        TestSupport::writeBytes(
            support / "agent-events.jsonl",
            R"({"agent":"claude","event":"working","session_id":"a","ts":1772532000,"cwd":"/home/u/parser"})"
            "\n"
            R"({"agent":"claude","event":"needs_you","session_id":"b","ts":1772531700})"
            "\n"
            R"({"agent":"codex","event":"done","session_id":"c","ts":1772532000})"
            "\n");
    }
    const std::string at = " --at 2026-03-03T10:00:00Z";
    TestSupport::TemporaryFolder home;
};

TEST_F(Pump, TellsUsageInWordsAndAsJson) {
    EXPECT_EQ(fellow("usage" + at).out, "  Claude  nothing logged\n  Codex   nothing logged\n");
    writeLogs();
    EXPECT_EQ(fellow("usage" + at).out,
              "  Claude  90% left, estimate, reset in 4 h 0 min, 4400 tokens, week 4400\n"
              "* Codex   54.5% left, exact, reset in 1 h 30 min\n");
    const json told = json::parse(fellow("usage --json" + at).out);
    EXPECT_EQ(told.at("nearest"), "codex");
    EXPECT_EQ(told.at("digits"), 54);
    EXPECT_EQ(told.at("light"), "normal");
    EXPECT_EQ(told.at("agents").at(0).at("resets_at"), "2026-03-03T14:00:00Z");
    EXPECT_EQ(told.at("agents").at(0).at("certainty"), "estimate");
    EXPECT_EQ(told.at("agents").at(1).at("left_percent"), 54.5);
    EXPECT_EQ(fellow("usage --at 2026-03-03T11:30:01Z").out.find("54.5"), std::string::npos)
        << "the window of the sample has passed";
}

TEST_F(Pump, AnotherPlanCountsAndAnotherMomentIsNotKept) {
    writeLogs();
    TestSupport::writeBytes(
        home / ".config/deskfellow/preferences.json",
        R"({"sprites.pump.preferences":"{\"plan\":\"max5x\",\"fiveHourBudget\":220000,\"usesCustomBudget\":false}"})");
    EXPECT_THAT(fellow("usage" + at).out, HasSubstr("Claude  98% left"));
    const std::filesystem::path cache = home / ".local/share/DeskSprites/sprites/pump/usage-cache.json";
    EXPECT_FALSE(std::filesystem::exists(cache));
    EXPECT_EQ(fellow("usage").status, 0);
    EXPECT_TRUE(std::filesystem::exists(cache));
}

TEST_F(Pump, ListsTheSessionsOfConnectedAgents) {
    EXPECT_EQ(fellow("sessions" + at).out, "No agent is connected; Pump's settings connect them.\n");
    writeEvents();
    EXPECT_EQ(fellow("sessions" + at).out,
              "needs_you  Claude  5 min   -\nworking    Claude  0 min   parser\n");
    const json told = json::parse(fellow("sessions --json" + at).out);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told.at(0).at("age_seconds"), 300);
    EXPECT_EQ(told.at(1).at("cwd"), "/home/u/parser");
    EXPECT_EQ(fellow("sessions --at 2026-03-03T13:00:00Z").out, "No sessions right now\n");
}

TEST_F(Pump, AWrongCommandLineIsSaid) {
    for (const char* words : {"usage --plan", "usage now", "sessions --at yesterday", "usage --json=1"}) {
        const Answer answer = fellow(words);
        EXPECT_EQ(answer.status, 2) << words;
        EXPECT_THAT(answer.err, HasSubstr("usage: fellow"));
        EXPECT_EQ(answer.out, "");
    }
}

} // namespace
