#include "core/focus/FocusTimer.h"

#include "tests/core/focus/TimerScript.h"

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <string>

namespace FellowCore {
namespace {

struct Case {
    const char* fault;
    const char* script;
    const char* end;
};

void expectPhases(std::span<const Case> cases, const TimerSettings& settings = TimerSettings()) {
    for (const Case& each : cases) {
        EXPECT_EQ(TimerScript(settings).run(each.script), each.end) << each.fault << ": " << each.script;
    }
}

TEST(FocusTimer, FollowsTheDeadlineAndNotTheTicks) {
    constexpr Case cases[] = {
        {"ticks are not counted", "start +10:00 tick tick tick", "focus running 15:00 0"},
        {"a second before the end is not the end", "start +24:59 tick", "focus running 00:01 0"},
        {"the end is the end", "start +24:59 tick +0:01 tick", "focus completed 00:00 1!"},
        {"a tick after a long sleep ends it", "start +9:00:00 tick", "focus completed 00:00 1!"},
        {"and the next tick does not end it again", "start +9:00:00 tick tick", "focus completed 00:00 1"},
        {"a clock set back cannot stretch a phase", "start -3:00:00 tick", "focus running 25:00 0"},
        {"a pause keeps what was left", "start +5:00 pause +1:00:00 tick", "focus paused 20:00 0"},
        {"and goes on from there", "start +5:00 pause +1:00:00 resume +1:00 tick", "focus running 19:00 0"},
        {"a pause after the deadline completes", "start +26:00 pause", "focus completed 00:00 1"},
        {"start while running changes nothing", "start +5:00 start", "focus running 20:00 0"},
        {"pause, resume and next refuse out of place", "pause resume next tick", "focus idle 25:00 0"},
        {"start resumes a paused timer", "start +5:00 pause start", "focus running 20:00 0"},
        {"completing twice counts once", "start complete complete", "focus completed 00:00 1"},
        {"a rest is no session", "start complete next complete", "shortBreak completed 00:00 1"},
        {"reset keeps the count", "start complete next reset", "focus idle 25:00 1"},
    };
    expectPhases(cases);
}

TEST(FocusTimer, GivesTheLongRestItsTurn) {
    const auto day = [](int longBreakEvery) {
        TimerScript script{TimerSettings(25, 5, 15, longBreakEvery)};
        std::string rests;
        for (int session = 1; session <= 8; ++session) {
            rests += script.run("start complete next").starts_with("longBreak running 15:00") ? "L" : "s";
            script.run("complete");
        }
        return rests;
    };
    EXPECT_EQ(day(4), "sssLsssL");
    EXPECT_EQ(day(3), "ssLssLss");
    EXPECT_EQ(day(1), "LLLLLLLL");
}

TEST(FocusTimer, BattiRestsByItselfButNeverFocusesByItself) {
    constexpr Case resting[] = {
        {"the rest begins at the tick, at full length", "press +26:00 battitick",
         "shortBreak running 05:00 1!"},
        {"the end of the rest waits", "press +26:00 battitick +5:00 battitick",
         "shortBreak completed 00:00 1!"},
        {"for a press", "press +26:00 battitick +5:00 battitick +9:00 press", "focus running 25:00 1"},
        {"a press in the tick of the deadline is no pause", "press +25:00 press",
         "shortBreak running 05:00 1!"},
        {"a press pauses", "press +1:00 press", "focus paused 24:00 0"},
        {"a press resumes", "press +1:00 press +1:00 press", "focus running 24:00 0"},
        {"a plain timer never rests by itself", "button +25:00 button", "focus completed 00:00 1!"},
        {"but at a press", "button +25:00 button button +1:00 button", "shortBreak paused 04:00 1"},
    };
    expectPhases(resting);

    constexpr Case waiting[] = {
        {"with rests off it waits", "press +25:00 battitick", "focus completed 00:00 1!"},
        {"for a press", "press +25:00 battitick press", "shortBreak running 05:00 1"},
        {"also when a press ended the phase", "press +25:00 press", "focus completed 00:00 1!"},
    };
    expectPhases(waiting, TimerSettings(25, 5, 15, 4, false));
}

TEST(FocusTimer, TakesNewSettingsOnlyWhileIdle) {
    constexpr Case cases[] = {
        {"idle takes them at once", "focus=10", "focus idle 10:00 0"},
        {"running finishes as it began", "start focus=10 +1:00 tick", "focus running 24:00 0"},
        {"the next phase is new", "start focus=10 complete next complete next", "focus running 10:00 1"},
        {"absurd settings are clamped", "focus=100000", "focus idle 120:00 0"},
    };
    expectPhases(cases);

    TimerScript paused;
    paused.run("start +5:00 pause focus=10");
    EXPECT_DOUBLE_EQ(paused.timer.progress(paused.now), 0.2) << "told against the length it began with";
}

TEST(FocusTimer, ComesBackFromAFilePausedOrDone) {
    constexpr Case cases[] = {
        {"time away counts, and nothing runs at launch", "start +5:00 tick +10:00 reload",
         "focus paused 10:00 0"},
        {"two hours late is one session and no rest", "start +2:25:00 reload", "focus completed 00:00 1"},
        {"a rest stays a rest", "start complete next +1:00:00 reload", "shortBreak completed 00:00 1"},
        {"an idle timer stays as it is", "reload", "focus idle 25:00 0"},
        {"a paused one loses nothing overnight", "start +5:00 pause +9:00:00 reload", "focus paused 20:00 0"},
    };
    expectPhases(cases);
}

TEST(FocusTimer, StaysSaneOnNumbersThatAreNone) {
    const Instant broken{std::numeric_limits<double>::quiet_NaN()};
    FocusTimer timer;
    timer.start(scriptStart);
    EXPECT_FALSE(timer.tick(broken)) << "a broken clock must not end a phase";
    EXPECT_EQ(timer.timeRemaining(broken), 1500);

    timer.deadline.reset();
    EXPECT_FALSE(timer.tick(scriptStart));
    EXPECT_EQ(timer.status, TimerStatus::paused) << "running without a deadline cannot go on";
    timer.remainingSeconds = 0;
    EXPECT_TRUE(timer.performPrimaryAction(scriptStart)) << "resuming with nothing left ends the phase";
    EXPECT_EQ(timer.completedFocusSessions, 1);

    FocusTimer full;
    full.completedFocusSessions = std::numeric_limits<std::int64_t>::max();
    full.complete();
    EXPECT_EQ(full.completedFocusSessions, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(full.pendingPhase(), TimerPhase::shortBreak);
    full.settings.longBreakEvery = 0;
    EXPECT_EQ(full.pendingPhase(), TimerPhase::longBreak) << "0 counts as 1, and nothing is divided by it";
    full.phaseDuration = 0;
    EXPECT_EQ(full.progress(scriptStart), 0);
}

TEST(TimerSettings, ClampHoweverTheyAreMade) {
    EXPECT_EQ(TimerSettings(0, -5, 0, 0), TimerSettings(1, 1, 1, 1));
    EXPECT_EQ(TimerSettings(121, 61, 121, 13), TimerSettings(120, 60, 120, 12));
    TimerSettings changed;
    changed.focusMinutes = 1'000'000'000;
    EXPECT_EQ(changed.duration(TimerPhase::focus), 7200);
}

} // namespace
} // namespace FellowCore
