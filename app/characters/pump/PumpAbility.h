#pragma once

#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/characters/pump/PumpAgentCue.h"
#include "app/characters/pump/PumpAgentService.h"
#include "app/characters/pump/PumpConnections.h"
#include "app/characters/pump/PumpDigitRoll.h"
#include "app/characters/pump/PumpFace.h"
#include "app/characters/pump/PumpUsageService.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/CharacterSite.h"

#include <QTimer>

#include <memory>

namespace DeskSprites {

class ManifestCharacterController;
class PumpPanel;

/// Pump shows what the coding agents have left and what their sessions are doing: the level in the tank, the
/// digits, the lamp, a cue when a session needs the user, and a panel with everything.
class PumpAbility final : public ManifestCharacterAbility {
public:
    /// `owner` is whose ability this will be; both outlive it. `hookProgram` is where fellow-hook is
    /// installed.
    PumpAbility(ManifestCharacterController& owner, CharacterSite& site,
                PumpUsageService::MakeReader makeReader, std::filesystem::path hookProgram);
    ~PumpAbility() override;

    PumpUsageService& usage() { return usage_; }
    PumpAgentService& agents() { return agents_; }
    PumpConnections& connections() { return connections_; }
    const Platform::Clock& clock() const { return site_.services.system.clock(); }
    /// Opens the panel and gives it the keyboard, or closes it. Pump comes out first when it is away.
    void togglePanel();
    /// The panel once it was opened, or null.
    PumpPanel* panel() const { return panelView_; }
    const PumpAgentCue& cue() const { return cue_; }
    /// What is drawn over the art now.
    PumpFace::Look look() const;

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override;
    std::optional<QString> statusOverride() const override;
    std::optional<QString> badge() const override;
    void activate() override;
    void deactivate() override;
    void pause() override;
    void resumeMonitoring() override;
    bool clicked() override;
    void motionChanged() override;
    void draw(QPainter& painter, const QRectF& art, double unit) override;
    std::vector<QuickAction> actions() override;
    void moved() override;

private:
    bool isOpen() const { return panel_ && panel_->isPresented(); }
    void watch(bool active);
    void openPanel();
    void makePanel();
    void usageChanged();
    void sessionsChanged();
    void needsYou(const std::vector<FellowCore::PumpAgentEvent>& alerts);
    void goTo(const FellowCore::PumpAgentEvent& session);
    void scheduleBlink();
    bool reducesMotion() const;
    FellowCore::Instant now() const;
    QuickAction openAction();
    QuickAction sessionsAction();
    std::optional<QuickAction> jumpAction();

    ManifestCharacterController& owner_;
    CharacterSite& site_;
    PumpFace face_;
    PumpUsageService usage_;
    PumpAgentService agents_;
    PumpConnections connections_;
    PumpDigitRoll roll_;
    PumpAgentCue cue_;
    std::unique_ptr<CharacterPanel> panel_; ///< made when first opened
    PumpPanel* panelView_ = nullptr;
    QTimer blink_; ///< runs only while the red lamp blinks
    bool active_ = false;
};

} // namespace DeskSprites
