#include "app/services/InterfaceAudio.h"

#include "core/base/MemoryPreferences.h"
#include "core/sound/WaveFile.h"
#include "platform/AudioThread.h"
#include "tests/platform/audio/SoundServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <memory>
#include <string>

namespace {

using namespace FellowCore;
using Cue = InterfaceSoundCue;
using DeskSprites::InterfaceAudio;
using Playback = InterfaceAudio::Playback;
using TestSupport::Heard;
using TestSupport::SoundServer;

const Rect screen{0, 0, 1000, 800};
const Point middle{500, 100};
constexpr int afterwards = 500; ///< milliseconds for what was played to arrive in the recording

double energyOfFile(Cue cue) {
    const auto name = std::string(resourceName(cue)) + ".wav";
    const auto sound =
        WaveFile::parse(TestSupport::bytesOf(std::filesystem::path(DESKFELLOW_DATA) / "sounds" / name));
    double energy = 0;
    for (const double sample : sound.samples)
        energy += sample / 32768 * (sample / 32768);
    return energy;
}

double decibels(double ratio) {
    return 10 * std::log10(ratio);
}

/// The whole way from a request to the loudspeaker; only the clock is ours.
class InterfaceAudioTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (SoundServer::isInstalled())
            server_ = std::make_unique<SoundServer>();
    }
    static void TearDownTestSuite() { server_.reset(); }

    void SetUp() override {
        if (server_) {
            server_->hear(0);
            return;
        }
        if (qEnvironmentVariable("CI") == QLatin1String("true"))
            FAIL() << "pulseaudio and pulseaudio-utils are not installed";
        GTEST_SKIP() << "pulseaudio and pulseaudio-utils are not installed";
    }

    std::unique_ptr<InterfaceAudio> makeAudio(std::filesystem::path sounds = DESKFELLOW_DATA "/sounds",
                                              Playback playback = Playback::audible) {
        const auto makeOutput = [this] {
            ++outputs_;
            return std::make_unique<Platform::AudioThread>(
                QStringLiteral(DESKFELLOW_PLUGINS "/libdeskfellow_audio.so"));
        };
        return std::make_unique<InterfaceAudio>(
            preferences_, std::move(sounds), makeOutput, [this] { return now_; }, playback);
    }

    /// One request from the middle of the screen, `later` after the one before.
    void request(InterfaceAudio& audio, Cue cue, Seconds later = 1, Point position = middle) {
        now_ = now_ + later;
        audio.play(cue, position, screen, false, false, 1);
    }

    static Heard hear(int milliseconds) { return server_->hear(milliseconds); }
    static SoundServer& server() { return *server_; }

    MemoryPreferences preferences_;
    MonotonicInstant now_{100};
    int outputs_ = 0;

private:
    static inline std::unique_ptr<SoundServer> server_;
};

TEST_F(InterfaceAudioTest, aCueIsHeardFromWhereTheCharacterStands) {
    struct Case {
        const char* fault;
        Point position;
        Rect screen;
        double volume, characterVolume;
    };
    const Case cases[] = {
        {"the right edge is not on the right", {1000, 0}, screen, 1, 1},
        {"the left edge is not on the left", {0, 0}, screen, 1, 1},
        {"the middle leans", middle, screen, 1, 1},
        {"an unknown screen takes a side", {1000, 0}, {}, 1, 1},
        {"the volumes do not multiply", {0, 0}, screen, 0.5, 0.5},
    };
    const double energy = energyOfFile(Cue::swap);
    const auto audio = makeAudio();
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        now_ = now_ + 1;
        audio->setVolume(testCase.volume);
        audio->play(Cue::swap, testCase.position, testCase.screen, false, false, testCase.characterVolume);
        const auto heard = hear(450 + afterwards);
        const auto pan =
            stereoPan(testCase.position, testCase.screen) * (testCase.volume * testCase.characterVolume);
        EXPECT_NEAR(decibels(heard.left / (energy * pan.left * pan.left)), 0, 0.3);
        EXPECT_NEAR(decibels(heard.right / (energy * pan.right * pan.right)), 0, 0.3);
    }
    EXPECT_EQ(outputs_, 1) << "the device was opened anew for each sound";
}

TEST_F(InterfaceAudioTest, defaultsAreOnAndModerate) {
    const auto audio = makeAudio();
    EXPECT_TRUE(audio->enabled());
    EXPECT_EQ(audio->volume(), 0.6);
    request(*audio, Cue::pause);
    EXPECT_NEAR(decibels(hear(350 + afterwards).both() / (energyOfFile(Cue::pause) * 0.36)), 0, 0.3);
}

TEST_F(InterfaceAudioTest, aCueTooCloseToAnotherIsNotHeardAndDoesNotSilenceIt) {
    const auto audio = makeAudio();
    audio->setVolume(1);
    request(*audio, Cue::pause);
    request(*audio, Cue::complete, 0.05);
    EXPECT_NEAR(decibels(hear(1600 + afterwards).both() / energyOfFile(Cue::pause)), 0, 0.3);
    request(*audio, Cue::pause, 0.05); // 0.1 after the first: the refused one does not count
    EXPECT_NEAR(decibels(hear(350 + afterwards).both() / energyOfFile(Cue::pause)), 0, 0.3);
}

TEST_F(InterfaceAudioTest, aNewCueDampsTheOneBefore) {
    const auto audio = makeAudio();
    audio->setVolume(1);
    request(*audio, Cue::miraComplete);
    EXPECT_GT(hear(250).both(), 0);
    request(*audio, Cue::pause);
    EXPECT_GT(hear(350 + afterwards).both(), 0.9 * energyOfFile(Cue::pause));
    EXPECT_LT(hear(1500).both(), 1e-6) << "the older sound rings on";
}

TEST_F(InterfaceAudioTest, ofTwoExemptCuesInOneMomentTheLaterStarts) {
    const auto audio = makeAudio();
    audio->setVolume(1);
    request(*audio, Cue::pause);
    request(*audio, Cue::miraComplete, 0.01);
    EXPECT_EQ(audio->playbackGeneration(), 2u);
    EXPECT_NEAR(decibels(hear(2900 + afterwards).both() / energyOfFile(Cue::miraComplete)), 0, 0.3);
}

TEST_F(InterfaceAudioTest, volumesApplyToWhatSounds) {
    const auto audio = makeAudio();
    request(*audio, Cue::miraComplete);
    EXPECT_GT(hear(300).both(), 0);
    // The device's buffer and the recorder's hold what was mixed before a change: pass over it.
    const auto heardAfterwards = [] {
        hear(250);
        return hear(150).both();
    };
    audio->setCharacterVolume(0, Cue::pause);
    EXPECT_GT(heardAfterwards(), 1e-3) << "another cue's volume was applied";
    audio->setCharacterVolume(0, Cue::miraComplete);
    EXPECT_LT(heardAfterwards(), 1e-9);
    audio->setCharacterVolume(1, Cue::miraComplete);
    EXPECT_GT(heardAfterwards(), 1e-3) << "the sound did not come back";
    audio->setVolume(0);
    EXPECT_LT(heardAfterwards(), 1e-9);
}

TEST_F(InterfaceAudioTest, stopEndsWhatSoundsAndWhatWasAboutTo) {
    const auto audio = makeAudio();
    request(*audio, Cue::complete);
    audio->stop();
    EXPECT_EQ(hear(afterwards).both(), 0);
    EXPECT_EQ(outputs_, 0);
    request(*audio, Cue::complete);
    EXPECT_GT(hear(250).both(), 0);
    audio->setEnabled(false);
    hear(250);
    EXPECT_EQ(hear(afterwards).both(), 0);
}

TEST_F(InterfaceAudioTest, refusalsLoadNothing) {
    const auto silent = makeAudio(DESKFELLOW_DATA "/sounds", Playback::silent);
    request(*silent, Cue::miraComplete);
    EXPECT_EQ(silent->playbackGeneration(), 1u);
    const auto audio = makeAudio();
    audio->play(Cue::open, middle, screen, true, false, 1);
    audio->play(Cue::open, middle, screen, false, true, 1);
    audio->setEnabled(false);
    request(*audio, Cue::miraComplete);
    EXPECT_EQ(hear(afterwards).both(), 0);
    EXPECT_EQ(outputs_, 0);
}

TEST_F(InterfaceAudioTest, anUnreadableSoundIsSilentAndSaysSoOnce) {
    const TestSupport::TemporaryFolder sounds;
    TestSupport::writeBytes(sounds / "interface-open.wav", "not a sound");
    std::filesystem::copy_file(DESKFELLOW_DATA "/sounds/interface-pause.wav", sounds / "interface-pause.wav");
    const auto audio = makeAudio(sounds.path());
    testing::internal::CaptureStderr();
    for (const auto cue : {Cue::open, Cue::open, Cue::complete})
        request(*audio, cue), TestSupport::runFor(10);
    const auto log = testing::internal::GetCapturedStderr();
    EXPECT_THAT(log, testing::ContainsRegex("interface-open.*RIFF.*\n.*interface-complete.*"));
    EXPECT_EQ(std::ranges::count(log, '\n'), 2);
    EXPECT_EQ(hear(afterwards).both(), 0);
    request(*audio, Cue::pause);
    EXPECT_GT(hear(350 + afterwards).both(), 0) << "one bad file silenced the others";
}

/// How often this process's threads of the audio side have been woken.
long wakeUps() {
    long total = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm") >> std::ws, name);
        if (name != "audio" && name != "threaded-ml")
            continue;
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("voluntary_ctxt_switches:"))
                total += std::stol(line.substr(line.find(':') + 1));
        }
    }
    return total;
}

TEST_F(InterfaceAudioTest, silenceCostsNothing) {
    const auto audio = makeAudio();
    request(*audio, Cue::open);
    TestSupport::runFor(300);
    EXPECT_EQ(server().openStreams(), 1);
    EXPECT_GT(wakeUps(), 5);
    TestSupport::runFor(2000);
    EXPECT_EQ(server().openStreams(), 0);
    const auto before = wakeUps();
    TestSupport::runFor(2000);
    EXPECT_LE(wakeUps() - before, 4); // the server itself may report a change or two
    hear(0);
    request(*audio, Cue::open);
    EXPECT_NEAR(decibels(hear(250 + afterwards).both() / (energyOfFile(Cue::open) * 0.36)), 0, 0.3);
}

} // namespace
