#include "app/characters/mira/BreathAudio.h"

#include "app/services/AudioShare.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <set>

namespace DeskSprites {
namespace {

using FellowCore::BreathingPhase;
using FellowCore::Seconds;
using Platform::AudioVoice;
using testing::ElementsAre;
using testing::IsEmpty;

/// What reached the loudspeaker, in words: the recording of a real one cannot tell two sounds apart.
struct Heard {
    std::vector<std::string> log;
    std::set<AudioVoice> sounding;
    int outputs = 0;
};

class WrittenOutput final : public Platform::AudioOutput {
public:
    explicit WrittenOutput(Heard& heard) : heard_(heard) { ++heard_.outputs; }

    void play(AudioVoice voice, Platform::AudioSamples samples, FellowCore::StereoGains gains,
              FellowCore::SoundStart from) override {
        EXPECT_TRUE(heard_.sounding.insert(voice).second) << "a voice is used twice";
        std::array<char, 80> line{};
        std::snprintf(line.data(), line.size(), "%.2f s from %.2f at %.3f, gain %.2f",
                      static_cast<double>(samples->size()) / 48000, from.offset, from.rate, gains.left);
        heard_.log.emplace_back(line.data());
    }
    void setGains(AudioVoice, FellowCore::StereoGains gains) override {
        heard_.log.push_back("gain " + QByteArray::number(gains.left).toStdString());
    }
    void stop(AudioVoice voice) override { heard_.sounding.erase(voice); }

private:
    Heard& heard_;
};

class MiraSoundTest : public testing::Test {
protected:
    BreathMix mix(bool voice, bool breath) const { return {{voice, 0.5}, {breath, 0.25}, {1, 1}}; }

    Heard heard_;
    BreathAudio audio_{DESKFELLOW_DATA "/sounds", [this] { return std::make_unique<WrittenOutput>(heard_); }};
};

TEST_F(MiraSoundTest, APhaseSoundsAsPlanned) {
    struct Row {
        const char* what;
        Seconds duration;
        Seconds elapsed;
        std::vector<std::string> expected;
        BreathingPhase phase;
        bool voice;
        bool breath;
    };
    const Row rows[] = {
        {"settling is silent", 3, 0, {}, BreathingPhase::settle, true, true},
        {"holding is only said",
         7,
         0,
         {"0.58 s from 0.00 at 1.000, gain 0.50"},
         BreathingPhase::hold,
         true,
         true},
        {"a breath alone fills the phase",
         5,
         0,
         {"4.00 s from 0.00 at 0.800, gain 0.25"},
         BreathingPhase::exhale,
         false,
         true},
        {"no cue in mid phase, the breath where it would be",
         5,
         2.5,
         {"4.00 s from 2.00 at 0.800, gain 0.25"},
         BreathingPhase::exhale,
         false,
         true},
        {"behind the cue the breath goes faster",
         4,
         2,
         {"4.00 s from 1.59 at 1.205, gain 0.25"},
         BreathingPhase::inhale,
         true,
         true},
        {"no faster than twice",
         1,
         0.5,
         {"4.00 s from 0.04 at 2.000, gain 0.25"},
         BreathingPhase::sip,
         true,
         true},
        {"resting has a sound of its own",
         4,
         0,
         {"0.50 s from 0.00 at 1.000, gain 0.50"},
         BreathingPhase::rest,
         true,
         false},
        {"nothing is wanted", 4, 0, {}, BreathingPhase::inhale, false, false},
    };
    for (const Row& row : rows) {
        heard_.log.clear();
        audio_.play(row.phase, row.duration, row.elapsed, mix(row.voice, row.breath));
        Testing::runFor(30);
        EXPECT_EQ(heard_.log, row.expected) << row.what;
        EXPECT_LE(heard_.sounding.size(), row.expected.size()) << row.what << ": what was before ends";
    }
}

TEST_F(MiraSoundTest, TheBreathWaitsForTheCueAndForNothingAfterAStop) {
    audio_.play(BreathingPhase::inhale, 4, 0, mix(true, true));
    Testing::runFor(400);
    EXPECT_EQ(heard_.log.size(), 1U) << "the cue, 0.56 seconds and a gap";
    EXPECT_TRUE(Testing::waitUntil([this] { return heard_.log.size() == 2; }, 1000));
    audio_.play(BreathingPhase::inhale, 4, 0, mix(true, true));
    audio_.stop();
    Testing::runFor(1000);
    EXPECT_EQ(heard_.log.size(), 3U);
    EXPECT_THAT(heard_.sounding, IsEmpty());
}

TEST_F(MiraSoundTest, OtherVolumesReachWhatSounds) {
    audio_.play(BreathingPhase::exhale, 5, 1, mix(false, true));
    Testing::runFor(20);
    audio_.setMix({{true, 1}, {true, 0.75}, {1, 1}});
    audio_.setMix({{true, 1}, {false, 0.75}, {1, 1}});
    EXPECT_THAT(heard_.log, ElementsAre(testing::_, "gain 0.75", "gain 0"));
    audio_.stop();
    audio_.setMix(mix(true, true));
    EXPECT_EQ(heard_.log.size(), 3U);
}

TEST_F(MiraSoundTest, ASilentRunOpensNothing) {
    BreathAudio silent(DESKFELLOW_DATA "/sounds", {});
    silent.play(BreathingPhase::inhale, 4, 0, mix(true, true));
    silent.setMix(mix(true, true));
    silent.stop();
    EXPECT_EQ(heard_.outputs, 0);
}

TEST_F(MiraSoundTest, OneLoudspeakerServesAllAndKeepsTheirVoicesApart) {
    AudioShare share([this] { return std::make_unique<WrittenOutput>(heard_); });
    const auto first = share.makeHandle();
    const auto second = share.makeHandle();
    first->stop(1);
    first->setGains(1, {1, 1});
    EXPECT_EQ(heard_.outputs, 0) << "nothing is opened before the first sound";
    const auto sound = std::make_shared<const std::vector<std::int16_t>>(480);
    for (AudioVoice voice = 1; voice <= 3; ++voice) {
        first->play(voice, sound, {1, 1}, {});
        second->play(voice, sound, {1, 1}, {});
    }
    EXPECT_EQ(heard_.outputs, 1);
    EXPECT_EQ(heard_.sounding.size(), 6U);
    first->stop(2);
    EXPECT_EQ(heard_.sounding.size(), 5U);
    first->stop(2);
    EXPECT_EQ(heard_.sounding.size(), 5U) << "the other's voice of that number sounds on";
}

} // namespace
} // namespace DeskSprites
