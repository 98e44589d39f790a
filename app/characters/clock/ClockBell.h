#pragma once

#include "app/desktop/CharacterSite.h"
#include "app/services/SoundFiles.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <string_view>

namespace DeskSprites {

class DesktopCharacter;

/// The bell in the tower: one soft stroke on the hour, for those who ask for it, and a moment in which it is
/// seen to swing.
class ClockBell {
public:
    static constexpr std::string_view hourlyKey = "clock.ringsHourly.v1";
    static constexpr int swingMilliseconds = 1800;

    /// `tower` is where the sound comes from; both outlive the bell.
    ClockBell(const DesktopCharacter& tower, CharacterSite& site);

    /// Begins or ends to swing.
    std::function<void()> onSwing;

    bool ringsHourly() const;
    void setRingsHourly(bool rings);
    /// One stroke. It swings only where motion is welcome.
    void ring();
    bool isSwinging() const { return swing_.isActive(); }
    /// Ends what is seen and heard.
    void hush();

private:
    void sound();
    FellowCore::StereoGains gains() const;

    const DesktopCharacter& tower_;
    CharacterSite& site_;
    SoundFiles files_;
    std::unique_ptr<Platform::AudioOutput> output_; ///< made for the first stroke
    Platform::AudioVoice voice_ = 0;
    QTimer swing_;
};

} // namespace DeskSprites
