#pragma once

#include "app/characters/mira/BreathAudio.h"
#include "app/characters/mira/MiraCue.h"
#include "app/characters/mira/MiraPreferences.h"
#include "app/characters/mira/MiraSessionFile.h"
#include "app/characters/mira/MiraSpriteView.h"
#include "app/characters/mira/SessionClock.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/DesktopCharacter.h"

#include <QTimer>

#include <memory>
#include <optional>

namespace DeskSprites {

/// Tells whoever shows Mira's state that it has changed.
class MiraNews : public QObject {
    Q_OBJECT
Q_SIGNALS:
    void changed();
};

/// Why a session stands that the user has not paused.
enum class MiraPauseReason { hidden, asleep, locked };

/// Mira, who guides breathing: her session, and how it is seen and heard. Leaving the desktop, the machine's
/// sleep and the screen's lock pause it; nothing but the user's press resumes it. A timer runs only while a
/// session does.
class MiraController final : public DesktopCharacter {
public:
    MiraController(Companion companion, CharacterSite& site);
    ~MiraController() override;

    void prepareForActivation() override { sprite_.prepare(); }
    void activate() override;
    void deactivate() override;

    /// Begins a session, or goes on with one that stands. Brings Mira on the desktop when she is not there.
    void start();
    void pause();
    /// Gives a session up.
    void end();
    /// What the frame timer does: shows the present moment, and carries out the end.
    void look();

    const FellowCore::BreathingSession& session() const { return session_; }
    /// Whether a session has begun and has not ended.
    bool isUnderWay() const;
    const std::optional<MiraPauseReason>& pauseReason() const { return reason_; }
    FellowCore::Instant now() const { return clock_.now(); }

    MiraPreferences& preferences() { return preferences_; }
    /// To be called after a change of preferences: sounds and motion apply at once, everything else to the
    /// next session.
    void preferencesChanged();
    const MiraNews& news() const { return news_; }
    /// The picture and the words that are shown, for those who look.
    const MiraSpriteView& sprite() const { return sprite_; }
    const MiraCue* cue() const;
    bool isFrameTimerActive() const { return frameTimer_.isActive(); }

    CharacterPresentation presentation() override;
    bool guidesBySound() const override;
    QImage portrait() const override { return sprite_.still(); }
    std::vector<FellowCore::Rect> attachments() const override;
    void willSleep() override;
    void screenLocked() override;
    void motionChanged() override;

protected:
    FellowCore::ManifestCharacterLayout adjusted(FellowCore::ManifestCharacterLayout layout) const override;
    void frameChanged() override;

private:
    enum class CueClosing { byUser, byUs };

    void interrupt(MiraPauseReason reason);
    void finish();
    void stopShowing();
    void phaseBegan(const MiraFrame& frame);
    void stateChanged();
    void persist();
    void showCue();
    void closeCue();
    void anchorCue();
    MiraMotion motion() const;
    BreathMix mix() const;
    void playCue(FellowCore::InterfaceSoundCue cue);

    CharacterSite& site_;
    SessionClock clock_;
    MiraPreferences preferences_;
    MiraSpriteView sprite_;
    MiraSessionFile file_;
    BreathAudio audio_;
    FellowCore::BreathingSession session_;
    std::optional<MiraPauseReason> reason_;
    std::unique_ptr<CharacterPanel> cue_; ///< made with the first session
    CueClosing closing_ = CueClosing::byUser;
    bool cueWanted_ = false; ///< until the user closes it
    QTimer frameTimer_;
    QTimer farewell_; ///< until the last words go
    MiraNews news_;
};

} // namespace DeskSprites
