#pragma once

#include "app/characters/dhiru/DevWatchController.h"
#include "app/characters/dhiru/DhiruAwake.h"
#include "app/characters/dhiru/DhiruTaps.h"
#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/CharacterSite.h"

#include <memory>

namespace DeskSprites {

class DhiruPanel;
class ManifestCharacterController;

/// Dhiru watches what runs on the machine: he looks up when it is busy, struggles when a process will not let
/// go, taps for a server that nobody uses, and his panel lists it all.
class DhiruAbility final : public ManifestCharacterAbility {
public:
    /// Opens an address in the user's browser; false when there is none.
    using OpenUrl = std::function<bool(const QString& url)>;

    /// `owner` is whose ability this will be; both outlive it.
    DhiruAbility(ManifestCharacterController& owner, CharacterSite& site, OpenUrl openUrl);
    ~DhiruAbility() override;

    DevWatchController& watch() { return watch_; }
    DhiruAwake& awake() { return awake_; }
    const DhiruTaps& taps() const { return taps_; }
    /// Opens the panel and gives it the keyboard, or closes it. Dhiru comes out first when he is away.
    void togglePanel();
    /// The panel once it was opened, or null.
    DhiruPanel* panel() const { return panelView_; }

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override;
    std::optional<std::string> artworkPose() const override;
    std::optional<QString> statusOverride() const override;
    FellowCore::Seconds blinkInterval() const override { return 6.0; }
    FellowCore::Seconds blinkDuration() const override { return 0.28; }
    void activate() override;
    void deactivate() override;
    void pause() override;
    void resumeMonitoring() override;
    bool clicked() override;
    void motionChanged() override;
    std::vector<QuickAction> actions() override;
    void moved() override;

private:
    bool isOpen() const { return panel_ && panel_->isPresented(); }
    void watchDesktop(bool active);
    void openPanel();
    void makePanel();
    void watchChanged();
    void noticed(const QString& sentence);
    void open(const QString& url);
    bool reducesMotion() const;
    QuickAction openAction();
    QuickAction browseAction();
    QuickAction awakeAction();

    ManifestCharacterController& owner_;
    CharacterSite& site_;
    OpenUrl openUrl_;
    DevWatchController watch_;
    DhiruAwake awake_;
    DhiruTaps taps_;
    std::unique_ptr<CharacterPanel> panel_; ///< made when first opened
    DhiruPanel* panelView_ = nullptr;
    std::string pose_; ///< as shown last
    QString status_;   ///< as shown last
    QObject context_;  ///< what is connected dies with it
    bool active_ = false;
};

} // namespace DeskSprites
