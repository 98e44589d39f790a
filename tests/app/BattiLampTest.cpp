#include "app/characters/batti/LampLight.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace DeskSprites {
namespace {

constexpr FellowCore::MonotonicInstant start{5000};

struct LampCase {
    const char* what;
    std::function<void(LampLight&)> prepare;
    std::vector<std::pair<double, double>> brightness; ///< seconds after `start`, brightness there
};

const LampCase cases[] = {
    {"nothing happens: steady", [](LampLight&) {}, {{0, 0.97}, {3.9, 0.97}}},
    {"a phase changes: off, on, off, on",
     [](LampLight& lamp) { lamp.flashPhase(start); },
     {{0, 0.18}, {0.149, 0.18}, {0.15, 0.97}, {0.31, 0.18}, {0.46, 0.97}, {0.6, 0.97}}},
    {"a phase ends: one blink",
     [](LampLight& lamp) { lamp.flashCompletion(start); },
     {{0, 0.97}, {0.16, 0.18}, {0.299, 0.18}, {0.3, 0.97}}},
    {"the end's blink hides the change's",
     [](LampLight& lamp) { lamp.flashPhase(start), lamp.flashCompletion(start); },
     {{0, 0.97}, {0.2, 0.18}, {0.31, 0.18}, {0.46, 0.97}}},
    {"paused: sinks and rises at the end of each four seconds",
     [](LampLight& lamp) { lamp.setPulses(true, start); },
     {{0, 0.97}, {3.39, 0.97}, {3.45, 0.8}, {3.57, 0.62}, {3.7, 0.5}, {3.95, 0.8}, {4.01, 0.97}, {7.7, 0.5}}},
    {"a change inside the breath",
     [](LampLight& lamp) { lamp.setPulses(true, start + -3.3), lamp.flashPhase(start); },
     {{0.1, 0.18}, {0.46, 0.97}, {0.61, 0.8}, {0.8, 0.97}, {4.4, 0.5}}},
    {"told of the pause again, the breath goes on",
     [](LampLight& lamp) { lamp.setPulses(true, start), lamp.setPulses(true, start + 2); },
     {{3.7, 0.5}, {5.7, 0.97}}},
    {"flashes that were cleared do not come back",
     [](LampLight& lamp) { lamp.flashPhase(start), lamp.flashCompletion(start), lamp.clearFlashes(); },
     {{0, 0.97}, {0.2, 0.97}}},
};

TEST(BattiLampTest, BurnsAsBrightAsTold) {
    for (const LampCase& row : cases) {
        LampLight lamp;
        row.prepare(lamp);
        for (const auto& [after, brightness] : row.brightness) {
            EXPECT_DOUBLE_EQ(lamp.brightness(start + after), brightness) << row.what << " " << after;
        }
    }
}

TEST(BattiLampTest, NothingChangesBeforeTheToldMoment) {
    for (const LampCase& row : cases) {
        LampLight lamp;
        row.prepare(lamp);
        double last = lamp.brightness(start);
        double steadyUntil = 0; // the latest moment that was told so far
        for (double after = 0; after < 9; after += 0.0007) {
            const double now = lamp.brightness(start + after);
            // The told moment may lie two milliseconds behind the change, so that a look there sees it.
            ASSERT_TRUE(now == last || after >= steadyUntil - 0.002) << row.what << " " << after;
            const auto told = lamp.untilNextChange(start + after);
            steadyUntil = std::max(steadyUntil, told ? after + *told : 9);
            last = now;
        }
    }
}

TEST(BattiLampTest, LooksNoMoreOftenThanItChanges) {
    for (const LampCase& row : cases) {
        LampLight lamp;
        row.prepare(lamp);
        int looks = 0;
        double at = 0;
        for (auto wait = lamp.untilNextChange(start); wait && at < 40;
             wait = lamp.untilNextChange(start + at)) {
            at += *wait;
            ++looks;
        }
        EXPECT_LE(looks, 70) << row.what << ": ten breaths of six changes, and a flash";
    }
}

TEST(BattiLampTest, ReducedMotionIsSteadyAndSetsNoAlarm) {
    for (const LampCase& row : cases) {
        LampLight lamp;
        lamp.setReduced(true);
        row.prepare(lamp);
        for (double after = 0; after < 9; after += 0.01) {
            ASSERT_DOUBLE_EQ(lamp.brightness(start + after), 0.97) << row.what;
            ASSERT_EQ(lamp.untilNextChange(start + after), std::nullopt) << row.what;
        }
    }
}

} // namespace
} // namespace DeskSprites
