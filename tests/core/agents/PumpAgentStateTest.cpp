#include "core/agents/PumpAgentState.h"

#include "core/agents/PumpAgentLamp.h"
#include "tests/core/agents/AgentScript.h"

#include <gmock/gmock.h>

#include <limits>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum PumpAgentPhase;

std::vector<std::string> names(const std::vector<PumpAgentEvent>& events) {
    std::vector<std::string> names;
    for (const PumpAgentEvent& event : events) {
        names.push_back(event.sessionID);
    }
    return names;
}

std::vector<std::string> live(const std::vector<PumpAgentEvent>& events, Seconds at) {
    PumpAgentState state;
    state.ingest(events, after(at));
    return names(state.sessions(after(at)));
}

TEST(PumpAgentState, EveryStateDecaysByItself) {
    const struct {
        const char* fault;
        PumpAgentPhase phase;
        Seconds age;
        bool isLive;
    } cases[] = {
        {"done, a moment before", done, 599, true},
        {"done, at its end", done, 600, false},
        {"needs you, a moment before", needsYou, 1799, true},
        {"needs you, at its end", needsYou, 1800, false},
        {"working, a moment before", working, 7199.5, true},
        {"working, at its end", working, 7200, false},
        {"a clock a little behind", working, -5, true},
        {"from the future", working, -6, false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(live({agentEvent("s", row.phase, 0)}, row.age).size(), row.isLive ? 1U : 0U) << row.fault;
    }
}

TEST(PumpAgentState, WhoNeedsTheUserStandsFirst) {
    EXPECT_THAT(live({agentEvent("new work", working, 50), agentEvent("ask", needsYou, 0),
                      agentEvent("b", done, 20), agentEvent("newer", done, 21), agentEvent("a", done, 20)},
                     60),
                ElementsAre("ask", "newer", "a", "b", "new work"));
    PumpAgentState state;
    EXPECT_FALSE(state.mostUrgent(after(0)));
    state.ingest({agentEvent("w", working, 0), agentEvent("d", done, 0)}, after(0));
    EXPECT_EQ(state.mostUrgent(after(1))->sessionID, "d");
    EXPECT_EQ(state.mostUrgent(after(700))->sessionID, "w") << "what is over gives way";
    EXPECT_FALSE(state.mostUrgent(Instant{std::numeric_limits<double>::quiet_NaN()}));
}

struct IngestCase {
    const char* fault;
    std::vector<PumpAgentEvent> before;
    std::vector<PumpAgentEvent> events;
    std::vector<std::string> alerts;
    PumpAgentPhase phase; ///< of session "s" afterwards
};

TEST(PumpAgentState, AlertsOnceForEachTimeOfNeed) {
    const auto ask = agentEvent("s", needsYou, 100);
    const auto codex = agentEvent("s", needsYou, 101, PumpProvider::codex);
    const IngestCase cases[] = {
        {"a first question", {}, {ask}, {"s"}, needsYou},
        {"the same line read again", {ask}, {ask}, {}, needsYou},
        {"a session that keeps asking", {ask}, {agentEvent("s", needsYou, 150)}, {}, needsYou},
        {"asked, worked, asked",
         {ask},
         {agentEvent("s", working, 120), agentEvent("s", needsYou, 150)},
         {"s"},
         needsYou},
        {"asked again long after", {agentEvent("s", needsYou, -1700)}, {ask}, {"s"}, needsYou},
        {"asked again just before that", {agentEvent("s", needsYou, -1699)}, {ask}, {}, needsYou},
        {"an older line does not replace a newer one", {agentEvent("s", working, 160)}, {ask}, {}, working},
        {"of one moment the later line counts", {agentEvent("s", working, 100)}, {ask}, {"s"}, needsYou},
        {"the other agent's session of that name", {ask}, {codex}, {"s"}, needsYou},
        {"too old to alert", {}, {agentEvent("s", needsYou, -1600)}, {}, needsYou},
        {"from the future", {agentEvent("s", done, 0)}, {agentEvent("s", needsYou, 206)}, {}, done},
        {"the newest alert first",
         {},
         {ask, agentEvent("t", needsYou, 120), codex},
         {"t", "s", "s"},
         needsYou},
    };
    for (const IngestCase& row : cases) {
        PumpAgentState state;
        state.ingest(row.before, after(200));
        EXPECT_EQ(names(state.ingest(row.events, after(200))), row.alerts) << row.fault;
        EXPECT_EQ(state.latest.at("claude:s").event, row.phase) << row.fault;
    }
}

TEST(PumpAgentState, RemembersTheLast200AndStaysSmall) {
    PumpAgentState state;
    std::vector<PumpAgentEvent> many;
    for (int count = 0; count < 3000; ++count) {
        many.push_back(agentEvent("s" + std::to_string(count), done, count));
    }
    state.ingest(many, after(3000));
    EXPECT_EQ(state.seen.size(), 200U);
    EXPECT_EQ(state.seen.front(), many[2800]);
    EXPECT_EQ(state.latest.size(), 599U) << "what is over does not pile up";
    EXPECT_EQ(state.sessions(after(3000)).size(), 599U);
}

TEST(PumpAgentState, ForgetsAnAgentThatIsNoLongerConnected) {
    PumpAgentState state;
    const auto codex = agentEvent("c", needsYou, 0, PumpProvider::codex);
    state.ingest({agentEvent("a", working, 0), codex}, after(0));
    state.clear(PumpProvider::codex);
    EXPECT_THAT(names(state.sessions(after(1))), ElementsAre("a"));
    EXPECT_THAT(state.ingest({codex}, after(1)), IsEmpty()) << "its lines are still in the file";
    EXPECT_THAT(names(state.sessions(after(1))), ElementsAre("a"));
}

TEST(PumpAgentPhase, NamesAreReadBack) {
    for (const PumpAgentPhase phase : {working, needsYou, done}) {
        EXPECT_EQ(pumpAgentPhaseFromRawValue(rawValue(phase)), phase);
    }
    EXPECT_EQ(title(needsYou), "NEEDS YOU");
    EXPECT_EQ(rawValue(needsYou), "needs_you");
}

TEST(PumpAgentLamp, OnlyRedBlinksAndOnlyWithMotion) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* fault;
        std::optional<PumpAgentPhase> phase;
        double at;
        bool reduceMotion;
        std::optional<std::string_view> pose;
    } cases[] = {
        {"nobody there", std::nullopt, 0, false, std::nullopt},
        {"amber is steady", working, 0.3, false, "lamp-amber"},
        {"green is steady", done, 0.3, false, "lamp-green"},
        {"lit at first", needsYou, 1000.24, false, "lamp-red"},
        {"dark from a quarter on", needsYou, 1000.25, false, "lamp-red-dim"},
        {"lit again after half a second", needsYou, 1000.5, false, "lamp-red"},
        {"before the epoch", needsYou, -0.2, false, "lamp-red-dim"},
        {"reduced motion", needsYou, 1000.25, true, "lamp-red"},
        {"no time", needsYou, notANumber, false, "lamp-red"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(PumpAgentLamp::pose(row.phase, Instant{row.at}, row.reduceMotion), row.pose) << row.fault;
    }
}

} // namespace
} // namespace FellowCore
