#include "app/characters/clock/ClockBell.h"

#include "app/desktop/DesktopCharacter.h"
#include "app/services/InterfaceAudio.h"
#include "core/sound/SoundVolume.h"
#include "core/sound/StereoPan.h"

namespace DeskSprites {

ClockBell::ClockBell(const DesktopCharacter& tower, CharacterSite& site)
    : tower_(tower), site_(site), files_(site.resources / "sounds") {
    swing_.setSingleShot(true);
    swing_.setInterval(swingMilliseconds);
    QObject::connect(&swing_, &QTimer::timeout, &swing_, [this] {
        if (onSwing) {
            onSwing();
        }
    });
}

bool ClockBell::ringsHourly() const {
    return site_.services.preferences.boolean(hourlyKey).value_or(false);
}

void ClockBell::setRingsHourly(bool rings) {
    site_.services.preferences.setBoolean(hourlyKey, rings);
}

void ClockBell::ring() {
    sound();
    if (!site_.services.system.motion().isReduced() && tower_.isShown()) {
        swing_.start();
        if (onSwing) {
            onSwing();
        }
    }
}

void ClockBell::hush() {
    if (output_) {
        output_->stop(voice_);
    }
    if (isSwinging()) {
        swing_.stop();
        if (onSwing) {
            onSwing();
        }
    }
}

void ClockBell::sound() {
    const Platform::AudioSamples samples = site_.makeAudio ? files_.samples("clock-bell") : nullptr;
    if (!samples) {
        return;
    }
    if (!output_) {
        output_ = site_.makeAudio();
    }
    output_->stop(voice_); // a bell has one voice
    output_->play(++voice_, samples, gains(), {});
}

/// As loud as the program's other sounds. Whether they are on is another question than this bell's.
FellowCore::StereoGains ClockBell::gains() const {
    const auto volume = site_.services.preferences.number(InterfaceAudio::volumeKey);
    const FellowCore::Rect stands = tower_.geometry().artwork;
    const auto screen = tower_.screen();
    return FellowCore::stereoPan({stands.midX(), stands.midY()},
                                 screen ? screen->frame : FellowCore::Rect{}) *
           FellowCore::clampedVolume(volume.value_or(InterfaceAudio::defaultVolume));
}

} // namespace DeskSprites
