#pragma once

#include "app/characters/clock/ClockBell.h"
#include "app/characters/clock/ClockFaces.h"
#include "app/characters/clock/ClockKeeper.h"
#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/CharacterSite.h"
#include "platform/LocalCalendar.h"

#include <QObject>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

class ClockPanel;
class ManifestCharacterController;

/// Ghanta Ghar shows the time at home on its large face and in up to two cities on the small ones, and opens
/// a panel with every clock the user chose. The hands move on the minute; nothing else does.
class ClockCharacter final : public QObject, public ManifestCharacterAbility {
    Q_OBJECT

public:
    /// `owner` is whose ability this will be; both outlive it.
    ClockCharacter(ManifestCharacterController& owner, CharacterSite& site)
        : ClockCharacter(owner, site, Platform::localCalendar) {}
    /// `calendar` answers the machine's zone.
    ClockCharacter(ManifestCharacterController& owner, CharacterSite& site,
                   ClockKeeper::LocalCalendar calendar);
    ~ClockCharacter() override;

    const FellowCore::WorldClockCatalog& catalog() const;
    const FellowCore::WorldClockState& state() const;
    /// The machine's zone.
    const std::string& systemTimeZone() const;
    FellowCore::WorldClockFormatter& formatter();
    /// Whether the catalogue's search answers at once. Until then it is being made ready on a queue, and
    /// `changed` tells when it is; what needs it asks by `prepareSearch`.
    bool searchIsReady() const;
    /// Begins to make the search ready, once; the panel asks when it opens.
    void prepareSearch();
    /// Changes what the user chose, stores it and shows it. `change` gets the state and says whether it is
    /// another one now, which is handed on.
    bool change(const std::function<bool(FellowCore::WorldClockState&)>& change);

    /// The present minute, or the one that the user travelled to.
    FellowCore::Instant shownDate() const;
    /// The day that the slider walks through, home's of the live date.
    const std::optional<FellowCore::WorldClockTravel>& travel() const;
    bool isPreviewing() const;
    /// Shows every clock at that minute of home's day.
    void preview(double atMinute);
    /// All rows show the live date again.
    void returnToNow();
    /// Home first, then the cities in the user's order, at the shown date.
    std::vector<FellowCore::WorldClockRow> rows();

    /// Whether it strikes softly on the hour. Off at first.
    bool ringsHourly() const;
    void setRingsHourly(bool rings);

    /// Opens the panel and gives it the keyboard, or closes it. Ghanta Ghar comes out first when it is away.
    void togglePanel();
    /// The panel once it was opened, or null.
    ClockPanel* panel() const;
    bool isPanelOpen() const { return panel_ && panel_->isPresented(); }

    ClockKeeper& keeper() { return *keeper_; }
    ClockBell& bell() { return bell_; }
    /// The pinned cities as they stand beside home: who is behind at the left, who is ahead at the right.
    std::array<std::optional<FellowCore::WorldClockRow>, 2> sides() const;
    /// What the dials show now.
    ClockFaces::Look look() const;

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override;
    std::optional<std::string> artworkPose() const override;
    std::optional<QString> statusOverride() const override;
    void activate() override;
    void deactivate() override;
    void pause() override;
    void resumeMonitoring() override;
    void screenLocked() override;
    void screenUnlocked() override;
    bool clicked() override;
    void motionChanged() override;
    void draw(QPainter& painter, const QRectF& art, double unit) override;
    std::vector<QuickAction> actions() override;
    void moved() override;

Q_SIGNALS:
    /// A minute has passed, the shown date is another one, or the user chose otherwise.
    void changed();

private:
    void openPanel();
    void makePanel();
    void keeperChanged();
    void copyHomeTime();
    void minuteMet(FellowCore::Instant minute);

    ManifestCharacterController& owner_;
    CharacterSite& site_;
    std::unique_ptr<ClockKeeper> keeper_; ///< behind a pointer, for what only looks may read the table
    ClockFaces faces_;
    ClockBell bell_;
    std::optional<ClockFaces::Look> look_;  ///< as it was drawn last, until it is another one
    std::unique_ptr<CharacterPanel> panel_; ///< made when first opened
    ClockPanel* panelView_ = nullptr;
    bool active_ = false;
    bool locked_ = false;
};

} // namespace DeskSprites
