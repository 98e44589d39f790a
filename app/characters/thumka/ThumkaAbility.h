#pragma once

#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/characters/thumka/NowPlayingService.h"
#include "app/characters/thumka/ThumkaTitle.h"
#include "app/characters/thumka/ThumkaWords.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/CharacterSite.h"
#include "core/nowplaying/NowPlayingState.h"

#include <QTimer>

#include <memory>

namespace DeskSprites {

class ManifestCharacterController;
class ThumkaPanel;

/// Thumka dances to whatever plays on this computer, says what it is when a piece begins, and dozes when it
/// has long been quiet. Between two of her poses nothing runs.
class ThumkaAbility final : public ManifestCharacterAbility {
public:
    /// `owner` is whose ability this will be; both outlive it. `mediaProgram` is where fellow-media is
    /// installed.
    ThumkaAbility(ManifestCharacterController& owner, CharacterSite& site, const QString& mediaProgram,
                  ApplicationName nameOf, NowPlayingPatience patience = {});
    ~ThumkaAbility() override;

    NowPlayingService& music() { return music_; }
    const FellowCore::NowPlayingState& state() const { return state_; }
    const ThumkaTitle& title() const { return title_; }
    /// Opens the panel and gives it the keyboard, or closes it. Thumka comes out first when she is away.
    void togglePanel();
    /// The panel once it was opened, or null.
    ThumkaPanel* panel() const { return panelView_; }

    /// Whether she says what begins; she does until the user has chosen.
    bool saysTitles() const;
    void setSaysTitles(bool says);

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override { return statusOverride(); }
    std::optional<std::string> artworkPose() const override;
    std::optional<QString> statusOverride() const override;
    bool canBlink() const override;
    void activate() override;
    void deactivate() override;
    void screenLocked() override;
    void screenUnlocked() override;
    bool clicked() override;
    void motionChanged() override;
    std::vector<QuickAction> actions() override;
    void moved() override;

private:
    bool isOpen() const { return panel_ && panel_->isPresented(); }
    bool isSeen() const { return active_ && !locked_; }
    FellowCore::MonotonicInstant now() const;
    bool reducesMotion() const;
    void musicChanged();
    void sayTitle();
    void titleIsDue();
    void poseIsDue();
    void schedulePose();
    void openPanel();
    void makePanel();
    QuickAction openAction(Emphasis emphasis);
    QuickAction commandAction(const char* id, const QString& title, FellowCore::NowPlayingCommand command,
                              bool enabled);

    ManifestCharacterController& owner_;
    CharacterSite& site_;
    ApplicationName nameOf_;
    NowPlayingService music_;
    FellowCore::NowPlayingState state_;
    FellowCore::NowPlayingState::Mode mode_ = FellowCore::NowPlayingState::Mode::idle; ///< as last shown
    ThumkaTitle title_;
    std::unique_ptr<CharacterPanel> panel_; ///< made when first opened
    ThumkaPanel* panelView_ = nullptr;
    QTimer pose_;     ///< until the next pose, while she is seen and it will be another
    QTimer titleEnd_; ///< while a title is shown
    bool active_ = false;
    bool locked_ = false;
};

} // namespace DeskSprites
