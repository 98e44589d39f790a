#include "app/characters/munshi/MunshiAbility.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/munshi/MunshiCapture.h"
#include "app/characters/munshi/MunshiPanel.h"
#include "app/characters/munshi/MunshiWords.h"
#include "app/desktop/PixelDigits.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/ShortcutBoard.h"

#include <QCoreApplication>

namespace DeskSprites {

namespace {

// Where the badge hangs, in art pixels of the canvas: on the corner of the book that he holds.
constexpr QPoint badgeCorner(63, 82);
constexpr int badgePadding = 3;

QString words(const char* source) {
    return QCoreApplication::translate("Munshi", source);
}

ShortcutPurpose capturePurpose() {
    return {"munshi-capture",
            "munshi.captureShortcut.key",
            "munshi.captureShortcut.modifiers",
            "munshi.captureShortcut.label",
            {Qt::Key_N, static_cast<int>(Qt::ControlModifier | Qt::AltModifier)},
            words("Another program already uses %1, so it does not open Munshi's field.")};
}

} // namespace

MunshiAbility::MunshiAbility(ManifestCharacterController& owner, CharacterSite& site,
                             MunshiBook::LocalCalendar calendar)
    : owner_(owner), site_(site), book_(site.services, std::move(calendar)),
      shortcut_(site.shortcuts.add(capturePurpose(), [this] { capture(); })) {
    writing_.setSingleShot(true);
    QObject::connect(&writing_, &QTimer::timeout, &writing_, [this] { owner_.abilityChanged(); });
    // With the timer as their context, for it goes before the book, which may still change while it saves.
    QObject::connect(&book_, &MunshiBook::changed, &writing_, [this] { owner_.abilityChanged(); });
    QObject::connect(&book_, &MunshiBook::told, &writing_, [this](const QString& said) { tell(said); });
}

MunshiAbility::~MunshiAbility() = default;

void MunshiAbility::activate() {
    book_.open();
}

void MunshiAbility::deactivate() {
    if (panel_) {
        panel_->dismiss();
    }
}

void MunshiAbility::pause() {
    book_.finishSaving();
}

void MunshiAbility::resumeMonitoring() {
    book_.timeChanged();
}

void MunshiAbility::screenLocked() {
    if (capture_) {
        capture_->dismiss();
    }
}

bool MunshiAbility::clicked() {
    const bool wasOpen = isOpen();
    if (wasOpen) {
        panel_->dismiss();
    }
    return wasOpen;
}

void MunshiAbility::toggleLedger() {
    if (isOpen()) {
        panel_->dismiss();
        return;
    }
    if (comeOut(owner_, site_)) {
        openLedger();
    }
}

void MunshiAbility::openLedger() {
    makePanel();
    if (const auto screen = owner_.screen()) {
        panelView_->fitInto(screen->visibleFrame.height);
    }
    if (!panel_->present(PanelOpening::replacesActions)) {
        site_.tell(words("There is no room for the ledger here. Move Munshi a little."));
        return;
    }
    panelView_->focusField();
    owner_.abilityChanged();
}

void MunshiAbility::makePanel() {
    if (panel_) {
        return;
    }
    auto view = std::make_unique<MunshiPanel>(book_, site_.services);
    panelView_ = view.get();
    panelView_->onWriting = [this] { owner_.abilityChanged(); };
    panel_ = std::make_unique<CharacterPanel>(owner_, site_, std::move(view));
    panel_->onDismissed = [this] { owner_.abilityChanged(); };
}

void MunshiAbility::capture() {
    if (!capture_) {
        capture_ = std::make_unique<MunshiCapture>(book_, site_.services);
        capture_->onWritten = [this] { wrote(); };
    }
    if (!capture_->isWriting()) {
        site_.dismissActions();
    }
    capture_->setAccent(owner_.companion().manifest.accent);
    capture_->toggle();
}

void MunshiAbility::textDropped(const QString& text) {
    book_.open();
    const MunshiBook::Added added = book_.addLines(text);
    tell(MunshiWords::added(added));
    if (added.lines > 0) {
        wrote();
    }
}

void MunshiAbility::wrote() {
    writing_.start(writingMilliseconds);
    owner_.abilityChanged();
}

void MunshiAbility::tell(const QString& sentence) {
    if (isOpen()) {
        panelView_->tell(sentence);
    } else {
        site_.tell(sentence);
    }
}

void MunshiAbility::moved() {
    if (panel_) {
        panel_->anchor();
    }
}

std::vector<FellowCore::Rect> MunshiAbility::attachmentWindows() const {
    return panel_ ? panel_->frames() : std::vector<FellowCore::Rect>{};
}

std::optional<QString> MunshiAbility::accessibilityValue() const {
    return statusOverride();
}

std::optional<QString> MunshiAbility::statusOverride() const {
    return book_.isRead() ? std::optional(QString::fromStdString(book_.ledger().tooltip())) : std::nullopt;
}

std::optional<QString> MunshiAbility::badge() const {
    return book_.isRead() ? std::optional(QString::fromStdString(book_.ledger().countLabel())) : std::nullopt;
}

std::optional<std::string> MunshiAbility::artworkPose() const {
    if (writing_.isActive() || (isOpen() && panelView_->isWriting())) {
        return "writing";
    }
    return book_.ledger().allDone() ? std::optional<std::string>("all-done") : std::nullopt;
}

void MunshiAbility::draw(QPainter& painter, const QRectF& art, double unit) {
    const std::string label = book_.ledger().countLabel();
    if (label == "0") {
        return;
    }
    const QString digits = QString::fromStdString(label);
    const PixelDigits face(PixelDigits::Face::small, 1);
    const QSize tag = face.size(digits) + QSize(2 * badgePadding, 2 * badgePadding);
    const auto palette = DialoguePalette::forAccent(owner_.companion().manifest.accent, DesktopTheme::light);
    painter.save();
    painter.translate(art.topLeft());
    painter.scale(unit, unit);
    const QRect outer(badgeCorner, tag);
    painter.fillRect(outer.adjusted(1, 0, -1, 0), palette.ink);
    painter.fillRect(outer.adjusted(0, 1, 0, -1), palette.ink);
    painter.fillRect(outer.adjusted(1, 1, -1, -1), palette.paper);
    face.paint(painter, badgeCorner + QPoint(badgePadding, badgePadding), digits, palette.accent);
    painter.restore();
}

std::vector<QuickAction> MunshiAbility::actions() {
    QuickAction open;
    open.id = QStringLiteral("open");
    open.title = isOpen() ? words("Close ledger") : words("Open ledger");
    open.emphasis = Emphasis::primary;
    open.icon = PixelIcon::days;
    open.onPress = [this] { toggleLedger(); };
    QuickAction field;
    field.id = QStringLiteral("capture");
    field.title = words("Quick line");
    field.icon = PixelIcon::edit;
    field.onPress = [this] { capture(); };
    return {open, field};
}

} // namespace DeskSprites
