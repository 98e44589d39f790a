#pragma once

#include "core/sound/SoundStart.h"
#include "core/sound/StereoPan.h"

#include <QtPlugin>

#include <cstdint>
#include <memory>
#include <vector>

namespace Platform {

/// Mono samples at 48 kHz, shared with whoever plays them and never changed.
using AudioSamples = std::shared_ptr<const std::vector<std::int16_t>>;

/// The caller's number for one sounding of a sound. Never used twice.
using AudioVoice = std::uint64_t;

/// Plays short sounds on whatever loudspeaker the person uses at that moment. With none there is silence,
/// which the caller need not know about. Nothing blocks and nothing throws.
class AudioOutput {
public:
    virtual ~AudioOutput() = default;

    /// Begins a voice over those that already sound, where and as fast as `from` says.
    virtual void play(AudioVoice voice, AudioSamples samples, FellowCore::StereoGains gains,
                      FellowCore::SoundStart from) = 0;
    /// Moves a voice to new gains; one that has ended is ignored, as in `stop`.
    virtual void setGains(AudioVoice voice, FellowCore::StereoGains gains) = 0;
    /// Lets a voice die away, within a tenth of a second.
    virtual void stop(AudioVoice voice) = 0;
};

/// What the audio plugin library offers.
class AudioOutputFactory {
public:
    virtual ~AudioOutputFactory() = default;

    /// An output for use on the calling thread alone, which must run an event loop.
    virtual std::unique_ptr<AudioOutput> makeAudioOutput() = 0;
};

} // namespace Platform

Q_DECLARE_INTERFACE(Platform::AudioOutputFactory, "deskfellow.AudioOutputFactory/2")
