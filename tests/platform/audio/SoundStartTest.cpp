#include "core/sound/VoiceMixer.h"
#include "platform/AudioThread.h"

#include "tests/platform/audio/SoundServer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <iostream>

namespace {

using FellowCore::SoundStart;
using FellowCore::VoiceMixer;

/// Two seconds at one loudness, so that what is heard tells for how long it lasted.
Platform::AudioSamples hum() {
    std::vector<std::int16_t> samples(std::size_t{2} * VoiceMixer::rate);
    for (std::size_t index = 0; index < samples.size(); ++index)
        samples[index] = index / 100 % 2 == 0 ? 8000 : -8000;
    return std::make_shared<const std::vector<std::int16_t>>(std::move(samples));
}

struct Case {
    const char* fault;
    SoundStart from;
    double seconds; // heard
};
const Case cases[] = {
    {"the whole is not played", {}, 2},
    {"the offset is lost on the way", {1.5, 1}, 0.5},
    {"the rate is lost on the way", {0, 2}, 1},
    {"one of both is lost", {1, 0.8}, 1.25},
    {"something is heard from behind the end", {3, 1}, 0},
};

bool everythingIsHeardAsLongAsItShould() {
    bool right = true;
    TestSupport::SoundServer server;
    Platform::AudioThread audio(QStringLiteral(DESKFELLOW_PLUGINS "/libdeskfellow_audio.so"));
    Platform::AudioVoice voice = 0;
    for (const Case& each : cases) {
        server.hear(0);
        audio.play(++voice, hum(), {1, 1}, each.from);
        constexpr double inASecond = VoiceMixer::rate * (8000.0 / 32768) * (8000.0 / 32768);
        const double heard = server.hear(static_cast<int>(1000 * each.seconds) + 600).left / inASecond;
        if (std::abs(heard - each.seconds) > 0.03 * each.seconds) {
            std::cerr << each.fault << ": " << heard << " s heard, not " << each.seconds << std::endl;
            right = false;
        }
    }
    return right;
}

/// The toolkit keeps the first sound server that it met for the life of a process, so this has one of its
/// own. It leaves without the toolkit's farewell to a server that is already gone, which is not what is
/// tested here and may abort.
[[noreturn]] void playFromEverywhere() {
    const bool right = everythingIsHeardAsLongAsItShould();
    std::cerr << "done" << std::endl;
    std::_Exit(right ? 0 : 1);
}

TEST(SoundStartDeathTest, theLoudspeakerPlaysFromWhereAndAsFastAsItIsTold) {
    if (!TestSupport::SoundServer::isInstalled()) {
        if (qEnvironmentVariable("CI") == QLatin1String("true"))
            FAIL() << "pulseaudio and pulseaudio-utils are not installed";
        GTEST_SKIP() << "pulseaudio and pulseaudio-utils are not installed";
    }
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(playFromEverywhere(), testing::ExitedWithCode(0), "done");
}

} // namespace
