#include "core/focus/BattiTimerPresentation.h"
#include "core/focus/CharacterMotion.h"
#include "core/focus/TutorialTimerSession.h"
#include "tests/core/focus/TimerScript.h"

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

using Light = BattiTimerPresentation::Light;

std::string faceText(TimerPhase phase, TimerStatus status, std::optional<BattiPauseReason> reason) {
    const BattiTimerPresentation face(phase, status, reason);
    const char* light = face.light == Light::red ? "red" : face.light == Light::amber ? "amber" : "green";
    return face.statusTitle + " / " + face.primaryTitle + " / " + light + (face.pulses ? " pulsing" : "");
}

TEST(BattiTimerPresentation, SaysAndShowsWhatTheTimerDoes) {
    using Phase = TimerPhase;
    using Status = TimerStatus;
    const struct {
        Phase phase;
        Status status;
        std::optional<BattiPauseReason> reason;
        const char* expected;
    } cases[] = {
        {Phase::focus, Status::idle, {}, "Ready for focus / Start focus / amber"},
        {Phase::focus, Status::running, {}, "Focus / Pause / red"},
        {Phase::shortBreak, Status::running, {}, "Short rest / Pause / green"},
        {Phase::longBreak, Status::running, BattiPauseReason::hidden, "Long rest / Pause / green"},
        {Phase::longBreak, Status::paused, {}, "Long rest paused / Resume / amber pulsing"},
        {Phase::focus, Status::paused, BattiPauseReason::asleep,
         "Paused while asleep / Resume / amber pulsing"},
        {Phase::focus, Status::paused, BattiPauseReason::hidden,
         "Paused while hidden / Resume / amber pulsing"},
        {Phase::focus, Status::completed, {}, "Focus complete / Start rest / green"},
        {Phase::shortBreak, Status::completed, {}, "Short rest complete / Start focus / amber"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(faceText(each.phase, each.status, each.reason), each.expected);
    }
    EXPECT_EQ(spokenTimerText(FocusTimer().battiPresentation(), 1500), "Ready for focus, 25:00 remaining");
}

TEST(TimerBadge, CountsEveryBegunSecond) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* fault;
        Seconds remaining;
        const char* expected;
    } cases[] = {
        {"hours stay minutes", 7200, "120:00"},
        {"short of ten is padded", 309, "05:09"},
        {"just started shows the full length", 1499.98, "25:00"},
        {"noise of a double is no second", 1499.0000001, "24:59"},
        {"the last instant is not over", 0.3, "00:01"},
        {"below nothing", -3, "00:00"},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), "00:00"},
        {"endless", infinity, "00:00"},
        {"more than a whole number holds", 1e300, "5999:59"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(timerBadge(each.remaining), each.expected) << each.fault;
    }
}

TEST(CharacterMotion, BlinksTheLampAtTheRightMoments) {
    // One sign for each 1/20 of a second from -0.05 on: "#" lit, "." dark.
    const auto curve = [](double (*light)(Seconds, bool), bool reduced) {
        std::string signs;
        for (int step = -1; step <= 14; ++step) {
            signs += light(step * 0.05, reduced) == CharacterMotion::litBrightness ? '#' : '.';
        }
        return signs;
    };
    EXPECT_EQ(curve(CharacterMotion::phaseLight, false), "#...###...######");
    EXPECT_EQ(curve(CharacterMotion::completionLight, false), "####...#########");
    EXPECT_EQ(curve(CharacterMotion::phaseLight, true), "################");
    EXPECT_EQ(curve(CharacterMotion::completionLight, true), "################");
    EXPECT_EQ(CharacterMotion::phaseLight(std::numeric_limits<double>::quiet_NaN(), false), 0.97);
    EXPECT_EQ(CharacterMotion::phaseLight(0.1, false), 0.18);
    EXPECT_EQ(CharacterMotion::phaseLight(0.1499995, false), 0.97)
        << "a frame at the edge of a step is in the next";
}

TEST(TimerPose, FollowsTheStatus) {
    std::string poses;
    for (const TimerStatus status : allTimerStatuses) {
        poses += std::string(timerPose(status)) + " ";
    }
    EXPECT_EQ(poses, "idle active paused complete ");
}

TEST(TutorialTimerSession, NeverTouchesTheUsersTimer) {
    TimerScript user{TimerSettings(40)};
    user.run("start complete next +1:00 pause");
    TutorialTimerSession session(user.timer);
    EXPECT_EQ(session.finish(), std::nullopt);

    ASSERT_TRUE(session.begin("mira", true));
    EXPECT_EQ(described(session.timer, scriptStart), "focus idle 40:00 0");
    session.timer.start(scriptStart);
    session.timer.complete();
    EXPECT_FALSE(session.begin("batti", false)) << "a second demonstration would overwrite the saved timer";
    EXPECT_EQ(session.persistent(), user.timer) << "the demonstration must not reach the file";

    session.updateSettings(TimerSettings(10));
    EXPECT_EQ(session.timer.settings.focusMinutes, 10);
    EXPECT_EQ(session.returnState(), (TutorialReturnState{"mira", true}));
    EXPECT_EQ(session.finish(), (TutorialReturnState{"mira", true}));
    EXPECT_FALSE(session.isDemo());
    EXPECT_EQ(described(session.timer, scriptStart), "shortBreak paused 04:00 1");
    EXPECT_EQ(session.persistent().settings.focusMinutes, 10)
        << "settings made during the tour are the user's";
}

} // namespace
} // namespace FellowCore
