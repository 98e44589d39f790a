#pragma once

#include "app/characters/mira/MiraPreferences.h"
#include "app/services/SoundFiles.h"
#include "core/breathing/BreathAudioPlan.h"
#include "core/breathing/BreathingPhase.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace DeskSprites {

/// How Mira's sounds are played: which of them, how loud, and from where.
struct BreathMix {
    SoundChoice voice;
    SoundChoice breath;
    FellowCore::StereoGains pan;
};

/// Mira's spoken cues and breath sounds, one phase at a time. Used from the main thread.
class BreathAudio {
public:
    using MakeOutput = std::function<std::unique_ptr<Platform::AudioOutput>()>;

    /// `soundsFolder` holds the WAV files; `makeOutput` runs when the first sound is due, and never when it
    /// is absent: then everything is silent.
    BreathAudio(std::filesystem::path soundsFolder, MakeOutput makeOutput);

    /// Plays the sounds of a phase that has lasted `elapsed` of its `duration`, in place of those before.
    void play(FellowCore::BreathingPhase phase, FellowCore::Seconds duration, FellowCore::Seconds elapsed,
              const BreathMix& mix);
    /// Takes other volumes for what sounds and is about to; what has been switched off ends.
    void setMix(const BreathMix& mix);
    void stop();

private:
    /// One of the two sounds of a phase.
    struct Sounding {
        Platform::AudioVoice voice = 0; ///< 0 while there is none
        Platform::AudioSamples samples;
        FellowCore::SoundStart from;
    };

    FellowCore::BreathAudioPlan planned(FellowCore::BreathingPhase phase, FellowCore::Seconds duration,
                                        FellowCore::Seconds elapsed);
    void begin(Sounding& sound, const SoundChoice& choice);
    void apply(const Sounding& sound, const SoundChoice& choice);
    void end(Sounding& sound);

    SoundFiles files_;
    MakeOutput makeOutput_;
    std::unique_ptr<Platform::AudioOutput> output_;
    BreathMix mix_;
    Platform::AudioVoice lastVoice_ = 0;
    Sounding cue_;
    Sounding breath_;
    QTimer breathDelay_;
};

} // namespace DeskSprites
