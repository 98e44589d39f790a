#pragma once

#include "app/characters/manifest/ManifestCharacterAbility.h"
#include "app/characters/munshi/MunshiBook.h"
#include "app/desktop/CharacterPanel.h"
#include "app/desktop/CharacterSite.h"

#include <QTimer>

#include <memory>

namespace DeskSprites {

class ManifestCharacterController;
class MunshiCapture;
class MunshiPanel;
class ShortcutKeeper;

/// Munshi keeps the day's ledger: a panel with the lines, a badge with how many are open, a field that opens
/// anywhere, and an ear for text that is dropped on him.
class MunshiAbility final : public ManifestCharacterAbility {
public:
    static constexpr int writingMilliseconds = 1500; ///< how long he writes after a line was added

    /// `owner` is whose ability this will be; both outlive it.
    MunshiAbility(ManifestCharacterController& owner, CharacterSite& site,
                  MunshiBook::LocalCalendar calendar);
    ~MunshiAbility() override;

    MunshiBook& book() { return book_; }
    /// The shortcut that opens the field anywhere; the board owns it.
    ShortcutKeeper& shortcut() const { return shortcut_; }
    /// Opens the panel and gives it the keyboard, or closes it. Munshi comes out first when he is away.
    void toggleLedger();
    /// Opens the field that adds a line, or closes it.
    void capture();
    /// The panel once it was opened, or null.
    MunshiPanel* panel() const { return panelView_; }
    MunshiCapture* captureField() const { return capture_.get(); }

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override;
    std::optional<std::string> artworkPose() const override;
    std::optional<QString> statusOverride() const override;
    std::optional<QString> badge() const override;
    void activate() override;
    void deactivate() override;
    void pause() override;
    void resumeMonitoring() override;
    void screenLocked() override;
    bool clicked() override;
    void draw(QPainter& painter, const QRectF& art, double unit) override;
    std::vector<QuickAction> actions() override;
    bool acceptsText() const override { return true; }
    void textDropped(const QString& text) override;
    void moved() override;

private:
    bool isOpen() const { return panel_ && panel_->isPresented(); }
    void makePanel();
    void openLedger();
    void tell(const QString& sentence);
    void wrote();

    ManifestCharacterController& owner_;
    CharacterSite& site_;
    MunshiBook book_;
    ShortcutKeeper& shortcut_;
    QTimer writing_; ///< runs for a moment after a line was added
    std::unique_ptr<MunshiCapture> capture_;
    std::unique_ptr<CharacterPanel> panel_;
    MunshiPanel* panelView_ = nullptr;
};

} // namespace DeskSprites
