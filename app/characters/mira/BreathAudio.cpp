#include "app/characters/mira/BreathAudio.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace DeskSprites {

using FellowCore::BreathAudioPlan;
using FellowCore::BreathingPhase;
using FellowCore::Seconds;
using FellowCore::StereoGains;

namespace {

/// The file of what is said at a phase's beginning; none for settling.
std::string_view cueName(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::inhale:
        return "mira-inhale";
    case BreathingPhase::sip:
        return "mira-sip";
    case BreathingPhase::hold:
        return "mira-hold";
    case BreathingPhase::exhale:
        return "mira-exhale";
    case BreathingPhase::rest:
        return "mira-rest";
    case BreathingPhase::settle:
        break;
    }
    return {};
}

/// The file of the breath that goes with it; none while nothing flows.
std::string_view breathName(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::inhale:
    case BreathingPhase::sip:
        return "breath-in";
    case BreathingPhase::exhale:
        return "breath-out";
    case BreathingPhase::settle:
    case BreathingPhase::hold:
    case BreathingPhase::rest:
        break;
    }
    return {};
}

} // namespace

BreathAudio::BreathAudio(std::filesystem::path soundsFolder, MakeOutput makeOutput)
    : files_(std::move(soundsFolder)), makeOutput_(std::move(makeOutput)) {
    breathDelay_.setSingleShot(true);
    breathDelay_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&breathDelay_, &QTimer::timeout, &breathDelay_, [this] { begin(breath_, mix_.breath); });
}

void BreathAudio::play(BreathingPhase phase, Seconds duration, Seconds elapsed, const BreathMix& mix) {
    stop();
    mix_ = mix;
    if (!makeOutput_ || (!mix.voice.on && !mix.breath.on)) {
        return;
    }
    const BreathAudioPlan plan = planned(phase, duration, elapsed);
    if (plan.voiceOffset) {
        cue_.samples = files_.samples(cueName(phase));
        begin(cue_, mix_.voice);
    }
    if (plan.breathDelay) {
        breath_.samples = files_.samples(breathName(phase));
        breath_.from = {plan.breathOffset, plan.breathRate};
        breathDelay_.start(static_cast<int>(std::lround(*plan.breathDelay * 1000)));
    }
}

BreathAudioPlan BreathAudio::planned(BreathingPhase phase, Seconds duration, Seconds elapsed) {
    const auto length = [this](std::string_view name) { return name.empty() ? 0 : files_.duration(name); };
    return BreathAudioPlan({.duration = duration,
                            .elapsed = elapsed,
                            .voiceDuration = length(cueName(phase)),
                            .breathDuration = length(breathName(phase)),
                            .voice = mix_.voice.on,
                            .breath = mix_.breath.on});
}

void BreathAudio::begin(Sounding& sound, const SoundChoice& choice) {
    if (!sound.samples || !choice.on) {
        return;
    }
    if (!output_) {
        output_ = makeOutput_();
    }
    sound.voice = ++lastVoice_;
    output_->play(sound.voice, sound.samples, mix_.pan * choice.volume, sound.from);
}

void BreathAudio::setMix(const BreathMix& mix) {
    mix_ = mix;
    apply(cue_, mix_.voice);
    apply(breath_, mix_.breath);
}

void BreathAudio::apply(const Sounding& sound, const SoundChoice& choice) {
    if (sound.voice != 0) {
        output_->setGains(sound.voice, choice.on ? mix_.pan * choice.volume : StereoGains{});
    }
}

void BreathAudio::end(Sounding& sound) {
    if (sound.voice != 0) {
        output_->stop(sound.voice);
    }
    sound = {};
}

void BreathAudio::stop() {
    breathDelay_.stop();
    end(cue_);
    end(breath_);
}

} // namespace DeskSprites
