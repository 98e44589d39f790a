#include "platform/AudioThread.h"

#include "tests/platform/audio/SoundServer.h"

#include <QElapsedTimer>
#include <QtGlobal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using Platform::AudioThread;
using TestSupport::runFor;
using TestSupport::SoundServer;

const auto library = QStringLiteral(DESKFELLOW_PLUGINS "/libdeskfellow_audio.so");

Platform::AudioSamples tone(std::size_t count) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t index = 0; index < count; ++index)
        samples[index] = index / 50 % 2 == 0 ? 3000 : -3000;
    return std::make_shared<const std::vector<std::int16_t>>(std::move(samples));
}

bool multimediaIsLoaded() {
    return TestSupport::bytesOf("/proc/self/maps").find("libQt6Multimedia") != std::string::npos;
}

/// What goes wrong for the life of a process is tried in a process of its own, whose standard error is
/// compared.
class AudioThreadDeathTest : public testing::Test {
protected:
    void SetUp() override { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

[[noreturn]] void expectAllAndExit(std::initializer_list<bool> expectations) {
    int index = 0;
    for (const bool expectation : expectations) {
        ++index;
        if (!expectation)
            std::cerr << "expectation " << index << " failed" << std::endl;
    }
    std::cerr << "done" << std::endl;
    std::exit(std::ranges::count(expectations, false) == 0 ? 0 : 1);
}

[[noreturn]] void playWithoutADevice() {
    qputenv("PULSE_SERVER", "unix:/nonexistent/native");
    bool loadedTooEarly = true;
    bool loadedWhenDue = false;
    {
        AudioThread audio(library);
        audio.setGains(1, {1, 1});
        audio.stop(1);
        runFor(50);
        loadedTooEarly = multimediaIsLoaded();
        for (Platform::AudioVoice voice = 1; voice <= 3; ++voice)
            audio.play(voice, tone(1000), {1, 1}, {});
        runFor(500);
        loadedWhenDue = multimediaIsLoaded();
    }
    expectAllAndExit({!loadedTooEarly, loadedWhenDue});
}

[[noreturn]] void playWithoutALibrary() {
    {
        AudioThread audio(QStringLiteral("/nonexistent/library.so"));
        for (Platform::AudioVoice voice = 1; voice <= 3; ++voice)
            audio.play(voice, tone(1000), {1, 1}, {});
        audio.stop(3);
        runFor(200);
    }
    expectAllAndExit({true});
}

[[noreturn]] void playWhileTheServerCrashes() {
    double before = 0;
    double after = 0;
    {
        SoundServer server;
        AudioThread audio(library);
        audio.play(1, tone(480'000), {1, 1}, {});
        before = server.hear(700).both();
        server.kill();
        audio.play(2, tone(480'000), {1, 1}, {});
        runFor(500);
        server.start();
        runFor(4000); // the toolkit's own pause before it tries the server again
        audio.play(3, tone(48'000), {1, 1}, {});
        after = server.hear(1500).both();
    }
    expectAllAndExit({before > 0, after > 0});
}

[[noreturn]] void endWhileTheServerHangs() {
    // Left alive, so that it hangs until the very end of this process, with which it dies.
    const auto* const server = new SoundServer;
    QElapsedTimer ending;
    {
        AudioThread audio(library);
        audio.play(1, tone(1000), {1, 1}, {});
        runFor(300);
        server->suspend();
        runFor(2000);
        audio.play(2, tone(1000), {1, 1}, {});
        runFor(100);
        ending.start();
    }
    const auto elapsed = ending.elapsed();
    std::filesystem::remove_all(qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString());
    expectAllAndExit({elapsed >= 1000, elapsed < 2000});
}

const auto succeeds = testing::ExitedWithCode(0);

TEST_F(AudioThreadDeathTest, withoutADeviceThereIsSilenceAndOneSentence) {
    using testing::AllOf;
    using testing::ContainsRegex;
    using testing::Not;
    const std::string sentence = "No sounds will play: there is no sound device";
    EXPECT_EXIT(playWithoutADevice(), succeeds,
                AllOf(ContainsRegex(sentence), Not(ContainsRegex(sentence + "[^\1]*" + sentence))));
}

TEST_F(AudioThreadDeathTest, withoutItsLibraryThereIsSilenceAndOneSentence) {
    using testing::AllOf;
    using testing::ContainsRegex;
    using testing::Not;
    const std::string sentence = "No sounds will play: the audio library cannot be loaded";
    EXPECT_EXIT(playWithoutALibrary(), succeeds,
                AllOf(ContainsRegex(sentence), Not(ContainsRegex(sentence + "[^\1]*" + sentence))));
}

TEST_F(AudioThreadDeathTest, soundsComeBackAfterTheServerCrashed) {
    EXPECT_EXIT(playWhileTheServerCrashes(), succeeds, "done");
}

TEST_F(AudioThreadDeathTest, theProgramEndsWhileTheServerHangs) {
    EXPECT_EXIT(endWhileTheServerHangs(), succeeds, "done");
}

} // namespace
