#pragma once

#include "app/services/SoundFiles.h"
#include "core/base/Geometry.h"
#include "core/base/Instant.h"
#include "core/base/Preferences.h"
#include "core/sound/InterfaceSoundCue.h"
#include "core/sound/InterfaceSoundGate.h"
#include "core/sound/StereoPan.h"
#include "platform/AudioOutput.h"

#include <QObject>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace DeskSprites {

/// The short sounds of the interface, one at a time, from where the character stands.
///
/// A permitted cue starts when the events at hand have been dealt with, so that no click waits for a file. It
/// damps the one before it. A sound file is read once, when it is first due; one that cannot be read stays
/// silent, with one warning. Used from the main thread.
class InterfaceAudio {
public:
    static constexpr std::string_view enabledKey = "collection.interfaceSounds";
    static constexpr std::string_view volumeKey = "collection.interfaceSoundVolume";
    static constexpr bool defaultEnabled = true;
    static constexpr double defaultVolume = 0.6;
    /// The program's switch that makes `Playback::silent`.
    static constexpr std::string_view muteSwitch = "--mute-interface-for-testing";

    enum class Playback { audible, silent };
    using Clock = std::function<FellowCore::MonotonicInstant()>;
    using MakeOutput = std::function<std::unique_ptr<Platform::AudioOutput>()>;

    /// `soundsFolder` holds the WAV files; `makeOutput` runs when the first sound is due.
    InterfaceAudio(FellowCore::Preferences& preferences, std::filesystem::path soundsFolder,
                   MakeOutput makeOutput, Clock clock, Playback playback);
    InterfaceAudio(const InterfaceAudio&) = delete;
    InterfaceAudio& operator=(const InterfaceAudio&) = delete;

    /// Asks for a cue. `position` and `screen` (its whole frame) pan it; an empty screen is the centre.
    /// `characterVolume` is 0...1. Does nothing when the gate refuses, or the playback is silent.
    void play(FellowCore::InterfaceSoundCue cue, FellowCore::Point position, const FellowCore::Rect& screen,
              bool guidanceActive, bool characterMuted, double characterVolume);

    /// Ends what sounds and what was about to.
    void stop();

    bool enabled() const;
    /// Stores the setting; switching sounds off also ends what sounds.
    void setEnabled(bool enabled);
    /// 0...1.
    double volume() const;
    /// Stores the setting and applies it to what sounds. Forced into 0...1; not finite is 1.
    void setVolume(double volume);
    /// Applies a character's volume to what sounds or is about to, when that is `cue`; nothing is stored.
    void setCharacterVolume(double volume, FellowCore::InterfaceSoundCue cue);

    /// Rises with each request and each `stop`. A start that was put off, and whose number is no longer the
    /// pending one, does nothing.
    std::uint64_t playbackGeneration() const { return playbackGeneration_; }
    bool silent() const { return silent_; }

private:
    struct Pending {
        std::uint64_t generation;
        FellowCore::InterfaceSoundCue cue;
        FellowCore::StereoGains pan;
        double characterVolume;
    };

    void begin(std::uint64_t generation);
    void applyGains();
    FellowCore::StereoGains currentGains() const;

    FellowCore::Preferences& preferences_;
    MakeOutput makeOutput_;
    Clock clock_;
    bool silent_;

    FellowCore::InterfaceSoundGate gate_;
    std::uint64_t playbackGeneration_ = 0;
    std::optional<Pending> pending_;
    SoundFiles players_;
    std::unique_ptr<Platform::AudioOutput> output_;
    Platform::AudioVoice current_ = 0; ///< the generation it started under; 0 before the first sound
    FellowCore::InterfaceSoundCue currentCue_{};
    FellowCore::StereoGains currentPan_;
    double currentCharacterVolume_ = 1;
    QObject context_; ///< a start that was put off dies with it
};

} // namespace DeskSprites
