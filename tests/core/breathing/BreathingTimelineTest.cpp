#include "core/breathing/BreathingTimeline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace FellowCore {
namespace {

/// One phase of one round, laid out the slow and obvious way.
struct Stretch {
    BreathingPhase phase;
    int round;
    Seconds begin;
    Seconds length;
    double emptiest; ///< how full the body is at its two ends
    double fullest;
};

std::vector<Stretch> laidOut(const BreathingTimeline& timeline) {
    std::vector<Stretch> stretches;
    Seconds begin = 0;
    const auto add = [&](BreathingPhase phase, int round, Seconds length, double from, double upTo) {
        if (length > 0) {
            stretches.push_back({phase, round, begin, length, from, upTo});
            begin += length;
        }
    };
    const BreathingSettings& rhythm = timeline.settings;
    const double firstDraw = rhythm.sip > 0 ? 0.72 : 1;
    add(BreathingPhase::settle, 1, timeline.settlingDuration, 0, 0);
    for (int round = 1; round <= rhythm.rounds; ++round) {
        add(BreathingPhase::inhale, round, rhythm.inhale, 0, firstDraw);
        add(BreathingPhase::sip, round, rhythm.sip, firstDraw, 1);
        add(BreathingPhase::hold, round, rhythm.hold, 1, 1);
        add(BreathingPhase::exhale, round, rhythm.exhale, 1, 0);
        add(BreathingPhase::rest, round, rhythm.rest, 0, 0);
    }
    return stretches;
}

/// Compares every answer with the laid out rhythm, at 60 frames a second and so at every border.
void expectLaidOut(const BreathingTimeline& timeline, const std::string& name) {
    constexpr int rate = 60;
    // The steepest there is: half a wave through 0.28 in half a second.
    constexpr double largestStep = 0.28 * std::numbers::pi / 2 / 0.5 / rate;
    Seconds end = 0;
    double before = 0;
    int frame = 0;
    for (const Stretch& each : laidOut(timeline)) {
        end = each.begin + each.length;
        for (; frame < end * rate; ++frame) {
            const Seconds at = static_cast<double>(frame) / rate;
            const Seconds into = at - each.begin;
            const double wave = 0.5 - 0.5 * std::cos(std::numbers::pi * into / each.length);
            const double fullness = timeline.expansion(at);
            SCOPED_TRACE(name + " at " + std::to_string(at));
            ASSERT_EQ(rawValue(timeline.phase(at)), rawValue(each.phase));
            ASSERT_EQ(timeline.round(at), each.round);
            ASSERT_EQ(timeline.phaseDuration(at), each.length);
            ASSERT_NEAR(timeline.phaseElapsed(at), into, 1e-9);
            ASSERT_NEAR(timeline.phaseProgress(at), into / each.length, 1e-9);
            ASSERT_NEAR(fullness, each.emptiest + wave * (each.fullest - each.emptiest), 1e-9);
            ASSERT_LT(std::abs(fullness - before), largestStep * 1.001) << "the body jumps";
            before = fullness;
        }
    }
    EXPECT_EQ(timeline.totalDuration(), end) << name;
    EXPECT_LT(std::abs(timeline.expansion(end) - before), largestStep) << name;
}

TEST(BreathingTimeline, WalksEveryRhythmWithoutALossOrAJump) {
    for (const BreathingMode mode : allBreathingModes) {
        expectLaidOut({settings(mode), 3}, std::string(title(mode)));
    }
    expectLaidOut({BreathingSettings(8, 8, 12, 75, 8, 2), 3}, "the longest session");

    std::mt19937 random(4781);
    const auto halves = [&](int from, int upTo) {
        return std::uniform_int_distribution(from, upTo)(random) / 2.0;
    };
    for (int pattern = 0; pattern < 40; ++pattern) {
        const BreathingSettings rhythm(halves(4, 16), halves(-4, 16), halves(4, 24), 2, halves(-4, 16),
                                       halves(-4, 4));
        expectLaidOut({rhythm, halves(0, 6)}, "random pattern " + std::to_string(pattern));
    }
}

TEST(BreathingTimeline, KnowsItsBordersExactly) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto justBefore = [](Seconds at) { return std::nextafter(at, 0); };
    const BreathingTimeline calm{settings(BreathingMode::calm), 3};
    const BreathingTimeline box{settings(BreathingMode::box), 3};
    const BreathingTimeline unsettled{settings(BreathingMode::reset), 0};
    using Phase = BreathingPhase;
    const struct {
        const char* fault;
        const BreathingTimeline& timeline;
        Seconds at;
        Phase phase;
        int round;
        double progress;
    } cases[] = {
        {"the last moment of settling", calm, justBefore(3), Phase::settle, 1, 1},
        {"the last of the first round", calm, justBefore(13), Phase::exhale, 1, 1},
        {"the first of the second", calm, 13, Phase::inhale, 2, 0},
        {"the last moment of all", calm, justBefore(63), Phase::exhale, 6, 1},
        {"no seventh round begins", calm, 63, Phase::exhale, 6, 1},
        {"nor ever", calm, 1e300, Phase::exhale, 6, 1},
        {"box ends on rest", box, justBefore(67), Phase::rest, 4, 1},
        {"and is over on exhale", box, 67, Phase::exhale, 4, 1},
        {"without settling the breath begins at once", unsettled, 0, Phase::inhale, 1, 0},
        {"before the beginning is the beginning", unsettled, -5, Phase::inhale, 1, 0},
        {"no number is the beginning", calm, notANumber, Phase::settle, 1, 0},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(rawValue(each.timeline.phase(each.at)), rawValue(each.phase)) << each.fault;
        EXPECT_EQ(each.timeline.round(each.at), each.round) << each.fault;
        EXPECT_NEAR(each.timeline.phaseProgress(each.at), each.progress, 1e-12) << each.fault;
    }
    EXPECT_EQ(box.expansion(67), 0);
    EXPECT_EQ(title(box.phase(8)), title(box.phase(66))) << "holding full and empty is said alike";
}

} // namespace
} // namespace FellowCore
