#include "core/sound/VoiceMixer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

using namespace FellowCore;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

VoiceMixer::Samples flat(std::size_t count, std::int16_t value) {
    return std::make_shared<const std::vector<std::int16_t>>(count, value);
}

VoiceMixer::Samples sound(std::vector<std::int16_t> samples) {
    return std::make_shared<const std::vector<std::int16_t>>(std::move(samples));
}

std::vector<std::int16_t> mixed(VoiceMixer& mixer, std::size_t frames) {
    std::vector<std::int16_t> out(frames * 2, 77);
    mixer.mix(out);
    return out;
}

/// The largest step from one frame of the left ear to the next.
int largestStep(const std::vector<std::int16_t>& stereo) {
    int largest = 0;
    for (std::size_t index = 2; index < stereo.size(); index += 2)
        largest = std::max(largest, std::abs(stereo[index] - stereo[index - 2]));
    return largest;
}

TEST(VoiceMixerTest, silenceIsWrittenAndNotLeftOver) {
    VoiceMixer mixer;
    EXPECT_TRUE(mixer.isSilent());
    EXPECT_THAT(mixed(mixer, 3), Each(0));
    std::vector<std::int16_t> odd(3, 77);
    mixer.mix(odd);
    EXPECT_THAT(odd, Each(0));
}

TEST(VoiceMixerTest, voicesKeepTheirPlaceGainsAndEnd) {
    VoiceMixer mixer;
    mixer.start(1, sound({100, 200, 300}), {1, 0.5});
    EXPECT_THAT(mixed(mixer, 1), ElementsAre(100, 50));
    mixer.start(2, sound({-1000, 10}), {0.25, 1});
    EXPECT_THAT(mixed(mixer, 4), ElementsAre(-50, -900, 303, 160, 0, 0, 0, 0));
    EXPECT_TRUE(mixer.isSilent());
}

TEST(VoiceMixerTest, aVoiceEndsWithTheBufferThatHoldsItsLastSample) {
    VoiceMixer mixer;
    mixer.start(1, flat(4, 5), {1, 1});
    mixed(mixer, 3);
    EXPECT_FALSE(mixer.isSilent());
    mixed(mixer, 1);
    EXPECT_TRUE(mixer.isSilent());
}

TEST(VoiceMixerTest, loudSumsSaturateAndDoNotWrap) {
    VoiceMixer mixer;
    mixer.start(1, sound({30000, -30000, -32768}), {1, 1});
    mixer.start(2, sound({30000, -30000, 32767}), {1, 0});
    EXPECT_THAT(mixed(mixer, 3), ElementsAre(32767, 30000, -32768, -30000, -1, -32768));
}

TEST(VoiceMixerTest, oneSoundMaySoundTwice) {
    VoiceMixer mixer;
    const auto shared = sound({10, 20, 30});
    mixer.start(1, shared, {1, 1});
    mixed(mixer, 1);
    mixer.start(2, shared, {1, 1});
    EXPECT_THAT(mixed(mixer, 2), ElementsAre(30, 30, 50, 50));
}

TEST(VoiceMixerTest, whatIsNoSoundOrNoGainMakesNoNoise) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    VoiceMixer mixer;
    mixer.start(1, nullptr, {1, 1});
    mixer.start(2, sound({}), {1, 1});
    EXPECT_TRUE(mixer.isSilent());
    mixer.start(3, sound({100, 100}), {nan, -3});
    mixer.start(4, sound({100, 100}), {0, 9});
    EXPECT_THAT(mixed(mixer, 2), ElementsAre(0, 100, 0, 100));
}

TEST(VoiceMixerTest, gainsChangeByRampAndOnlyForTheirVoice) {
    VoiceMixer mixer;
    mixer.start(1, flat(1000, 10000), {1, 1});
    mixer.start(2, flat(1000, 1000), {1, 1});
    mixer.setGains(1, {0.5, 0});
    mixer.setGains(99, {0, 0});
    const auto out = mixed(mixer, 1000);
    EXPECT_LE(largestStep(out), 10000 / static_cast<int>(VoiceMixer::rampFrames) + 1);
    EXPECT_EQ(out[0], 11000) << "the change begins where the sound was";
    EXPECT_EQ(out[2 * VoiceMixer::rampFrames + 1], 1000) << "and is over when the ramp is";
    EXPECT_EQ(out[2 * VoiceMixer::rampFrames], 6000);
}

TEST(VoiceMixerTest, aReleasedVoiceDiesAwayAndStaysReleased) {
    VoiceMixer mixer;
    mixer.start(1, flat(10 * VoiceMixer::releaseFrames, 20000), {1, 1});
    mixed(mixer, 10);
    mixer.release(1);
    mixer.release(7);
    const auto first = mixed(mixer, VoiceMixer::releaseFrames / 2);
    mixer.release(1);
    EXPECT_FALSE(mixer.isSilent());
    const auto second = mixed(mixer, VoiceMixer::releaseFrames / 2);
    EXPECT_TRUE(mixer.isSilent()) << "releasing twice began anew";
    EXPECT_EQ(first.front(), 20000);
    EXPECT_NEAR(second.front(), 10000, 10);
    EXPECT_LE(std::abs(second.back()), 10);
    EXPECT_LE(std::max(largestStep(first), largestStep(second)), 8);
}

TEST(VoiceMixerTest, aFloodOfVoicesReplacesTheOldest) {
    VoiceMixer mixer;
    mixer.start(0, flat(2, 1000), {1, 1});
    for (VoiceMixer::Voice voice = 1; voice <= VoiceMixer::voiceLimit; ++voice)
        mixer.start(voice, flat(2, 1), {1, 1});
    EXPECT_THAT(mixed(mixer, 1), Each(static_cast<std::int16_t>(VoiceMixer::voiceLimit)));
}

TEST(VoiceMixerTest, aSoundMayBeginInItsMiddleAndGoFasterOrSlower) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double second = 1.0 / VoiceMixer::rate;
    const auto climb = [] {
        std::vector<std::int16_t> samples(1000);
        for (std::size_t index = 0; index < samples.size(); ++index)
            samples[index] = static_cast<std::int16_t>(10 * index);
        return sound(std::move(samples));
    }();
    struct Case {
        const char* fault;
        SoundStart from;
        std::size_t frames; // until the end
        int at300;          // the sample heard then, the ramp being over
    };
    const Case cases[] = {
        {"the offset is not in seconds", {500 * second, 1}, 500, 8000},
        {"twice the rate does not take every other sample", {0, 2}, 500, 6000},
        {"half the rate does not go between samples", {0, 0.5}, 2000, 1500},
        {"an odd rate is rounded", {0, 1.205}, 830, 3615},
        {"offset and rate do not go together", {100 * second, 2}, 450, 7000},
        {"before the beginning is not the beginning", {-3, 1}, 1000, 3000},
        {"no number is not the beginning", {nan, nan}, 1000, 3000},
        {"too fast is not held back", {0, 1e9}, 250, 0},
        {"too slow never ends", {0, 0}, 4000, 750},
    };
    for (const auto& each : cases) {
        VoiceMixer mixer;
        mixer.start(1, climb, {1, 1}, each.from);
        const auto out = mixed(mixer, each.frames - 1);
        EXPECT_FALSE(mixer.isSilent()) << each.fault;
        if (each.frames > 300) {
            EXPECT_NEAR(out[std::size_t{600}], each.at300, 1) << each.fault;
        }
        mixed(mixer, 1);
        EXPECT_TRUE(mixer.isSilent()) << each.fault;
    }
    VoiceMixer mixer;
    for (const double offset : {1000 * second, 5.0, 1e300})
        mixer.start(1, climb, {1, 1}, {offset, 1});
    EXPECT_TRUE(mixer.isSilent()) << "behind the end there is nothing";
    mixer.start(2, flat(1000, 10000), {1, 1}, {500 * second, 1});
    EXPECT_LE(largestStep(mixed(mixer, 300)), 10000 / static_cast<int>(VoiceMixer::rampFrames) + 1)
        << "the middle begins with a click";
}

TEST(VoiceMixerTest, theSizeOfBuffersIsNotHeard) {
    std::vector<std::int16_t> wave(500);
    for (std::size_t index = 0; index < wave.size(); ++index)
        wave[index] = static_cast<std::int16_t>((index * 7919) % 20011);
    const auto played = [&](std::size_t buffer) {
        VoiceMixer mixer;
        mixer.start(1, sound(wave), {0.3, 0.7});
        mixer.setGains(1, {0.9, 0.1});
        std::vector<std::int16_t> all;
        while (all.size() < 2 * 504) {
            const auto part = mixed(mixer, buffer);
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    };
    EXPECT_THAT(played(1), ElementsAreArray(played(504)));
    EXPECT_THAT(played(63), ElementsAreArray(played(504)));
}

} // namespace
