#include "app/characters/batti/LampLight.h"

#include <gmock/gmock.h>

#include <functional>

namespace DeskSprites {
namespace {

using FellowCore::MonotonicInstant;

constexpr MonotonicInstant start{5000};

struct LampCase {
    const char* what;
    std::function<void(LampLight&)> prepare;
    std::vector<std::pair<double, double>> brightness; ///< seconds after `start`, brightness there
};

void PrintTo(const LampCase& row, std::ostream* out) {
    *out << row.what;
}

const std::vector<LampCase> cases{
    {"nothing happens: steady", [](LampLight&) {}, {{0, 0.97}, {3.9, 0.97}}},
    {"a phase changes: off, on, off, on",
     [](LampLight& lamp) { lamp.flashPhase(start); },
     {{0, 0.18}, {0.149, 0.18}, {0.15, 0.97}, {0.31, 0.18}, {0.46, 0.97}, {0.6, 0.97}}},
    {"a phase ends: one blink",
     [](LampLight& lamp) { lamp.flashCompletion(start); },
     {{0, 0.97}, {0.16, 0.18}, {0.299, 0.18}, {0.3, 0.97}}},
    {"the end's blink hides the change's",
     [](LampLight& lamp) {
         lamp.flashPhase(start);
         lamp.flashCompletion(start);
     },
     {{0, 0.97}, {0.2, 0.18}, {0.31, 0.18}, {0.46, 0.97}}},
    {"paused: sinks and rises at the end of each four seconds",
     [](LampLight& lamp) { lamp.setPulses(true, start); },
     {{0, 0.97},
      {3.39, 0.97},
      {3.45, 0.8},
      {3.57, 0.62},
      {3.7, 0.5},
      {3.8, 0.62},
      {3.95, 0.8},
      {4.01, 0.97},
      {7.7, 0.5}}},
    {"a change inside the breath",
     [](LampLight& lamp) {
         lamp.setPulses(true, start);
         lamp.flashPhase(start + 3.7);
     },
     {{3.6, 0.62}, {3.75, 0.18}, {3.86, 0.97}, {7.7, 0.5}}},
    {"told of the pause again, the breath goes on",
     [](LampLight& lamp) {
         lamp.setPulses(true, start);
         lamp.setPulses(true, start + 2);
     },
     {{3.7, 0.5}, {5.7, 0.97}}},
    {"flashes that were cleared do not come back",
     [](LampLight& lamp) {
         lamp.flashPhase(start);
         lamp.flashCompletion(start);
         lamp.clearFlashes();
     },
     {{0, 0.97}, {0.2, 0.97}}},
};

class BattiLampTest : public testing::TestWithParam<LampCase> {};
INSTANTIATE_TEST_SUITE_P(Lamp, BattiLampTest, testing::ValuesIn(cases));

TEST_P(BattiLampTest, BurnsAsBrightAsTold) {
    LampLight lamp;
    GetParam().prepare(lamp);
    for (const auto& [after, brightness] : GetParam().brightness) {
        EXPECT_DOUBLE_EQ(lamp.brightness(start + after), brightness) << after << " s";
    }
}

TEST_P(BattiLampTest, NothingChangesBeforeTheToldMoment) {
    LampLight lamp;
    GetParam().prepare(lamp);
    constexpr double step = 0.0017;
    constexpr double end = 9;
    // The told moment may lie up to two milliseconds behind the change, never before it and never much later.
    for (double after = 0; after < end; after += step) {
        const double now = lamp.brightness(start + after);
        const auto told = lamp.untilNextChange(start + after);
        const double still = told ? *told - 0.002 : end;
        ASSERT_TRUE(!told || *told > 0) << after;
        for (double later = 0; later < still; later += step) {
            ASSERT_DOUBLE_EQ(lamp.brightness(start + after + later), now) << after << " s, then " << later;
        }
    }
}

TEST_P(BattiLampTest, FollowsEveryChangeByWakingOnlyWhenTold) {
    LampLight lamp;
    GetParam().prepare(lamp);
    int looks = 0;
    double at = 0;
    for (auto wait = lamp.untilNextChange(start); wait && at < 40; wait = lamp.untilNextChange(start + at)) {
        at += *wait;
        ++looks;
    }
    EXPECT_LE(looks, 70) << "ten breaths of six changes and a flash; more would be idle work";
}

TEST_P(BattiLampTest, ReducedMotionIsSteadyAndSetsNoAlarm) {
    LampLight lamp;
    lamp.setReduced(true);
    GetParam().prepare(lamp);
    for (double after = 0; after < 9; after += 0.01) {
        ASSERT_DOUBLE_EQ(lamp.brightness(start + after), 0.97);
        ASSERT_EQ(lamp.untilNextChange(start + after), std::nullopt);
    }
}

TEST(BattiLampTest, SetsNoAlarmOnceAFlashIsOver) {
    LampLight lamp;
    lamp.setPulses(true, start);
    lamp.flashPhase(start);
    lamp.flashCompletion(start);
    lamp.setPulses(false, start + 0.1);
    EXPECT_EQ(lamp.untilNextChange(start + 0.6), std::nullopt);
}

} // namespace
} // namespace DeskSprites
