#pragma once

#include "app/characters/TimerFile.h"
#include "app/characters/batti/PixelSpriteView.h"
#include "app/desktop/DesktopCharacter.h"
#include "core/focus/TutorialTimerSession.h"
#include "core/sound/InterfaceSoundCue.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace DeskSprites {

/// Batti, the focus light: its timer and its lamp. Leaving the desktop and the machine's sleep pause it;
/// nothing but the user's press resumes it.
class BattiController final : public DesktopCharacter {
public:
    static constexpr const char* prefix = "sprites.batti.";

    /// A sound is due; only called when Batti's sounds are on or the cue answers a press.
    std::function<void(FellowCore::InterfaceSoundCue)> onCue;
    /// A phase has ended by itself, not by a press.
    std::function<void()> onPhaseEnded;

    /// `lamps` as `PixelSpriteView` takes them.
    BattiController(Companion companion, std::array<QImage, 3> lamps, DesktopServices& services);
    ~BattiController() override;

    void prepareForActivation() override {}
    void activate() override;
    void deactivate() override;

    void primaryAction();
    void resetSession();
    /// Brings the timer up to date and carries out the end of a phase.
    void tick();
    void persist();

    const FellowCore::TutorialTimerSession& timerSession() const { return timerSession_; }
    FellowCore::BattiTimerPresentation timerPresentation() const;
    bool sounds() const { return sounds_; }
    bool isMirrored() const { return mirrored_; }
    bool hasOwnReducedMotion() const { return reducedMotion_; }
    void applySettings(const FellowCore::TimerSettings& settings);
    void setSounds(bool sounds);
    void setMirrored(bool mirrored);
    void setReducedMotion(bool reduced);

    void setVisibleHeight(double height, FellowCore::Sizing sizing) override;
    CharacterPresentation presentation() override;
    QImage portrait() const override;
    void willSleep() override;
    void didWake() override;
    void motionChanged() override;

protected:
    FellowCore::ManifestCharacterLayout adjusted(FellowCore::ManifestCharacterLayout layout) const override;
    double faceHeight(const FellowCore::ManifestCharacterLayout& layout) const override;
    void frameChanged() override;

private:
    FellowCore::Instant now() const;
    void readViewState();
    void pause(FellowCore::BattiPauseReason reason);
    void timerChanged();
    void updateDisplay();
    void updateSessionTimer();
    void cue(FellowCore::InterfaceSoundCue cue);

    std::array<QImage, 3> lamps_;
    PixelSpriteView sprite_;
    FellowCore::TutorialTimerSession timerSession_;
    TimerFile store_;
    std::optional<FellowCore::BattiPauseReason> battiPauseReason_;
    double spriteHeight_ = 320; ///< of the whole canvas, in points
    bool mirrored_ = false;
    bool sounds_ = true;
    bool reducedMotion_ = false;
    QTimer sessionTimer_;
};

} // namespace DeskSprites
