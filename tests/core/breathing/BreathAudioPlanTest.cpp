#include "core/breathing/BreathAudioPlan.h"

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(BreathAudioPlan, FitsVoiceAndBreathIntoThePhase) {
    constexpr std::optional<Seconds> none;
    constexpr double usual = 3.5 / 3.88;
    const struct {
        const char* fault;
        BreathAudioContext context;
        std::optional<Seconds> voiceOffset;
        std::optional<Seconds> breathDelay;
        Seconds breathOffset;
        double breathRate;
    } cases[] = {
        {"the breath waits for the voice and a gap", {5, 0, 1, 3.5, true, true}, 0, 1.12, 0, usual},
        {"in the middle the voice stays silent", {5, 3, 1, 3.5, true, true}, none, 0, 1.88 * usual, usual},
        {"the latest moment to speak", {5, 0.0799, 1, 3.5, true, true}, 0, 1.0401, 0, usual},
        {"a moment later", {5, 0.08, 1, 3.5, true, true}, none, 1.04, 0, usual},
        {"a tiny cue is over sooner", {5, 0.05, 0.05, 0, true, true}, none, none, 0, 0.5},
        {"no voice, no waiting", {5, 0, 1, 3.5, false, true}, none, 0, 0, 0.7},
        {"no breath, but the voice", {5, 0, 1, 3.5, true, false}, 0, none, 0, usual},
        {"never more than twice as fast", {2, 0, 0, 12, false, true}, none, 0, 0, 2},
        {"never less than half as fast", {12, 0, 0, 2, false, true}, none, 0, 0, 0.5},
        {"a short sound is over before the phase", {12, 5, 0, 2, false, true}, none, none, 2.5, 0.5},
        {"a cue as long as the phase leaves no breath", {1, 0, 3, 3.5, true, true}, 0, none, 0, 1},
        {"a window too short to be heard", {1, 0, 0.74, 3.5, true, true}, 0, none, 0, 2},
        {"a window just long enough", {1, 0, 0.72, 3.5, true, true}, 0, 0.84, 0, 2},
        {"a phase that is over", {5, 9, 1, 30, true, true}, none, none, 7.76, 2},
        {"a wanted voice without a cue still leaves the gap",
         {5, 0, 0, 3.5, true, true},
         none,
         0.12,
         0,
         3.5 / 4.88},
        {"a second before the phase is its beginning", {5, -1, 1, 3.5, true, true}, 0, 1.12, 0, usual},
        {"lengths that are none", {5, 0, -2, infinity, true, true}, none, none, 0, 0.5},
    };
    for (const auto& each : cases) {
        const BreathAudioPlan plan(each.context);
        EXPECT_EQ(plan.voiceOffset, each.voiceOffset) << each.fault;
        ASSERT_EQ(plan.breathDelay.has_value(), each.breathDelay.has_value()) << each.fault;
        EXPECT_NEAR(plan.breathDelay.value_or(0), each.breathDelay.value_or(0), 1e-12) << each.fault;
        EXPECT_NEAR(plan.breathOffset, each.breathOffset, 1e-12) << each.fault;
        EXPECT_NEAR(plan.breathRate, each.breathRate, 1e-12) << each.fault;
    }
}

} // namespace
} // namespace FellowCore
