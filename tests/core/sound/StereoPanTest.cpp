#include "core/sound/StereoPan.h"
#include "core/sound/SoundVolume.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace FellowCore;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double huge = std::numeric_limits<double>::max();

/// The gain in decibels by which the right ear is louder.
double rightward(StereoGains gains) {
    return 20 * std::log10(gains.right / gains.left);
}

TEST(StereoPanTest, turnsTowardsTheCharacterAndKeepsTheLoudness) {
    const double edge = rightward({std::cos(0.4 * M_PI), std::sin(0.4 * M_PI)});
    const Rect screen{0, 0, 1920, 1080};
    const Rect second{-1280, 200, 1280, 1024};
    struct Case {
        const char* fault;
        Point position;
        Rect screen;
        double rightwardDecibels;
    };
    const Case cases[] = {
        {"the middle leans", {960, 0}, screen, 0},
        {"left and right are swapped", {1920, 500}, screen, edge},
        {"the left edge is not the mirror of the right", {0, 500}, screen, -edge},
        {"height moves the sound", {1920, -9000}, screen, edge},
        {"a character half off the screen is louder", {2400, 500}, screen, edge},
        {"the screen's origin is forgotten", {-640, 500}, second, 0},
        {"the second screen has no left edge", {-1280, 500}, second, -edge},
        {"an unknown screen takes a side", {1920, 500}, {}, 0},
        {"a screen with a negative width turns the sides", {100, 0}, {0, 0, -200, 100}, 0},
        {"no number reaches the loudspeaker", {nan, 0}, screen, 0},
        {"an endless screen divides", {10, 0}, {0, 0, infinity, 100}, 0},
        {"an endless origin divides", {10, 0}, {-infinity, 0, 100, 100}, 0},
        {"an overflow makes no number", {huge, 0}, {-huge, 0, 1, 1}, 0},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        const auto gains = stereoPan(testCase.position, testCase.screen);
        EXPECT_NEAR(gains.left * gains.left + gains.right * gains.right, 1, 1e-12);
        EXPECT_NEAR(rightward(gains), testCase.rightwardDecibels, 1e-9);
        EXPECT_GT(std::min(gains.left, gains.right), 0.25) << "an ear hears nothing";
    }
}

TEST(SoundVolumeTest, eachVolumeIsForcedIntoBoundsBeforeTheyMeet) {
    struct Case {
        const char* fault;
        double volume, characterVolume, expected;
    };
    const Case cases[] = {
        {"the two are added", 0.6, 0.5, 0.3},
        {"a loud character undoes a quiet setting", 0.5, 2, 0.5},
        {"two negatives make a sound", -1, -1, 0},
        {"a broken setting silences", nan, 0.5, 0.5},
        {"a broken character setting silences", 0.5, -infinity, 0.5},
    };
    for (const auto& testCase : cases)
        EXPECT_DOUBLE_EQ(combinedVolume(testCase.volume, testCase.characterVolume), testCase.expected)
            << testCase.fault;
}

} // namespace
