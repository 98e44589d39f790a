#pragma once

#include "app/characters/TimerFile.h"
#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/characters/manifest/ManifestSpriteView.h"
#include "app/desktop/DesktopCharacter.h"
#include "core/focus/FocusTimer.h"

#include <QTimer>

#include <memory>

namespace DeskSprites {

/// The runtime of a character that is defined by a manifest: its window, its blink, its timer when the
/// manifest asks for one, and its ability's place in all that.
class ManifestCharacterController final : public DesktopCharacter {
public:
    /// `companion` has a pack.
    ManifestCharacterController(Companion companion, DesktopServices& services);
    ~ManifestCharacterController() override;

    /// Gives the character its job, before it is first shown. Called once at most.
    void setAbility(std::unique_ptr<ManifestCharacterAbility> ability);
    ManifestCharacterAbility* ability() const { return ability_.get(); }
    /// The ability has another pose, status or overlay.
    void abilityChanged();
    /// Only the ability's pose is another.
    void poseChanged() { updatePose(); }
    /// Only what the ability draws over the art is another.
    void overlayChanged() { sprite_.refreshOverlay(); }

    void prepareForActivation() override;
    void activate() override;
    void deactivate() override;

    void performPrimaryAction();
    QString primaryTitle() const;
    QString status() const;
    void reset();
    void pauseTimer();
    bool hasTimer() const;
    const FellowCore::FocusTimer& timer() const { return timer_; }
    void updateTimerSettings(const FellowCore::TimerSettings& settings);
    const std::string& pose() const { return sprite_.pose(); }

    CharacterPresentation presentation() override;
    std::vector<FellowCore::Rect> attachments() const override;
    bool clicked() override;
    void willSleep() override;
    void didWake() override;
    void screenLocked() override;
    void screenUnlocked() override;
    void motionChanged() override;

protected:
    void frameChanged() override;

private:
    FellowCore::Instant now() const;
    void saveTimer();
    void tick();
    void timerChanged();
    void updateTickTimer();
    void updatePose();
    bool blinks() const;
    void scheduleBlink();
    void blink();
    CharacterPresentation timerPresentation();

    ManifestSpriteView sprite_;
    std::unique_ptr<ManifestCharacterAbility> ability_;
    FellowCore::FocusTimer timer_;
    std::optional<TimerFile> store_; ///< only with the timer behaviour
    QTimer tickTimer_;
    QTimer blinkWork_;
    bool blinking_ = false;
};

} // namespace DeskSprites
