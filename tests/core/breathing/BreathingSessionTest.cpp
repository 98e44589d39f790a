#include "core/breathing/BreathingSession.h"

#include "tests/core/breathing/BreathingScript.h"

#include <gtest/gtest.h>

#include <limits>
#include <span>

namespace FellowCore {
namespace {

struct Case {
    const char* fault;
    const char* script;
    const char* end;
};

void expectStates(std::span<const Case> cases, const BreathingSession& session = BreathingSession()) {
    for (const Case& each : cases) {
        EXPECT_EQ(BreathingScript(session).run(each.script), each.end) << each.fault << ": " << each.script;
    }
}

TEST(BreathingSession, PlaysWhatTheClockSays) {
    constexpr Case cases[] = {
        {"nothing runs by itself", "+60 tick", "idle 0.0 settle 1"},
        {"settling comes first", "start +2.9", "running 2.9 settle 1"},
        {"the second round", "start +13", "running 13.0 inhale 2"},
        {"the last breath out", "start +62.9 tick", "running 62.9 exhale 6"},
        {"the end is told once", "start +63 tick tick +1 tick", "completed 63.0 exhale 6!"},
        {"however late", "start +86400 tick", "completed 63.0 exhale 6!"},
        {"starting twice does not begin anew", "start +20 start +1", "running 21.0 exhale 2"},
        {"a pause stands still", "start +10 pause +3600 tick", "paused 10.0 exhale 1"},
        {"an hour's pause does not count", "start +10 pause +3600 start +1", "running 11.0 exhale 1"},
        {"nothing to pause", "pause", "idle 0.0 settle 1"},
        {"a pause after the end completes, silently", "start +64 pause tick", "completed 63.0 exhale 6"},
        {"a completed session stays completed", "start +64 tick start +5", "completed 63.0 exhale 6!"},
        {"until it is reset", "start +64 tick reset start +5", "running 5.0 inhale 1!"},
        {"a clock set back takes nothing away", "start +10 pause start -86400", "running 10.0 exhale 1"},
        {"nor does it end anything", "start -86400 tick pause", "paused 0.0 settle 1"},
    };
    expectStates(cases);

    constexpr Case box[] = {
        {"a pause within the hold goes on within it", "start +9 pause +3600 start +1.9",
         "running 10.9 hold 1"},
    };
    expectStates(box, BreathingSession(settings(BreathingMode::box)));
}

TEST(BreathingSession, ComesBackPausedAtTheRightSecond) {
    constexpr Case cases[] = {
        {"time away does not count", "start +20 reload +3600 tick", "paused 20.0 exhale 2"},
        {"and the session goes on", "start +20 reload +3600 start +3", "running 23.0 inhale 3"},
        {"a session over at the save is over", "start +64 reload", "completed 63.0 exhale 6"},
    };
    expectStates(cases);

    BreathingSession running;
    running.start(scriptStart);
    EXPECT_EQ(described(running.pausedSnapshot(scriptStart + 7), scriptStart + 99), "paused 7.0 inhale 1");
    EXPECT_EQ(described(running, scriptStart + 9), "running 9.0 exhale 1") << "a snapshot stops nothing";
}

TEST(BreathingSession, NeverDriftsOverTheLongestSession) {
    BreathingSession session(BreathingSettings(8, 8, 12, 75, 8, 2));
    ASSERT_EQ(session.totalDuration(), 3 + 75 * 38);
    Instant now = scriptStart;
    double played = 0;
    int endings = 0;
    for (int frame = 0; endings == 0 && frame < 200000; ++frame) {
        session.start(now);
        const Seconds late = 1.0 / 60 + 0.013 * (frame % 3);
        now = now + late;
        played += late;
        endings += session.tick(now) ? 1 : 0;
        if (frame % 5 == 0) {
            session.pause(now);
            now = now + 12.3;
        }
    }
    EXPECT_EQ(endings, 1);
    EXPECT_NEAR(played, session.totalDuration(), 0.1);
}

TEST(BreathingSession, StaysSaneOnNumbersThatAreNone) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(BreathingSession(settings(BreathingMode::calm), notANumber).settlingDuration, 3);
    EXPECT_EQ(BreathingSession(settings(BreathingMode::calm), -1).settlingDuration, 0);
    EXPECT_EQ(BreathingSession(settings(BreathingMode::calm), 3.5).settlingDuration, 3);

    BreathingSession session;
    session.start(scriptStart);
    EXPECT_FALSE(session.tick(Instant{infinity})) << "a broken clock must not end a session";
    EXPECT_EQ(session.elapsed(Instant{notANumber}), 0);
    session.startedAt.reset();
    EXPECT_EQ(session.elapsed(scriptStart + 9), 0) << "a stretch that never began has no length";
    session.accumulatedSeconds = notANumber;
    session.normalizeForRestore();
    EXPECT_EQ(described(session, scriptStart), "paused 0.0 settle 1");
}

} // namespace
} // namespace FellowCore
