#include "app/characters/dhiru/DhiruAbility.h"

#include "app/characters/dhiru/DhiruPanel.h"
#include "app/characters/dhiru/DhiruWords.h"
#include "app/characters/manifest/ManifestCharacterController.h"
#include "core/devwatch/DevWatchPose.h"

#include <QCoreApplication>

#include <algorithm>

namespace DeskSprites {

using FellowCore::DevWatchActivityState;

namespace {

/// A menu takes "&" for the mark of a key.
QString inMenu(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

DhiruAbility::DhiruAbility(ManifestCharacterController& owner, CharacterSite& site, OpenUrl openUrl)
    : owner_(owner), site_(site), openUrl_(std::move(openUrl)), watch_(site.services),
      awake_(site.services.preferences), taps_(site.services.system.clock()) {
    taps_.onBeat = [this] { watchChanged(); };
    QObject::connect(&watch_, &DevWatchController::changed, &context_, [this] { watchChanged(); });
    QObject::connect(&watch_, &DevWatchController::noticed, &context_,
                     [this](const QString& sentence) { noticed(sentence); });
    QObject::connect(&awake_, &DhiruAwake::changed, &context_, [this] { owner_.abilityChanged(); });
}

DhiruAbility::~DhiruAbility() = default;

void DhiruAbility::activate() {
    watchDesktop(true);
}

void DhiruAbility::deactivate() {
    if (panel_) {
        panel_->dismiss();
    }
    watchDesktop(false);
}

void DhiruAbility::pause() {
    watchDesktop(false);
}

void DhiruAbility::resumeMonitoring() {
    watchDesktop(true);
}

void DhiruAbility::watchDesktop(bool active) {
    active_ = active;
    watch_.setDesktopActive(active);
    awake_.setDesktopActive(active);
    watchChanged();
}

bool DhiruAbility::reducesMotion() const {
    return site_.services.system.motion().isReduced();
}

void DhiruAbility::watchChanged() {
    const bool isQuiet = watch_.view().activity == DevWatchActivityState::idleServer;
    taps_.setWanted(active_ && isQuiet && !reducesMotion());
    // Most readings change nothing that is seen of Dhiru himself.
    std::string pose = *artworkPose();
    QString status = *statusOverride();
    if (std::exchange(pose_, pose) != pose || std::exchange(status_, status) != status) {
        owner_.abilityChanged();
    }
}

void DhiruAbility::motionChanged() {
    watchChanged();
}

void DhiruAbility::noticed(const QString& sentence) {
    if (isOpen()) {
        panelView_->tell(sentence);
    } else {
        site_.tell(sentence);
    }
}

void DhiruAbility::open(const QString& url) {
    if (!openUrl_(url)) {
        noticed(DhiruWords::words("No browser opened %1.").arg(url));
    }
}

std::optional<std::string> DhiruAbility::artworkPose() const {
    return std::string(
        FellowCore::DevWatchPose::name(watch_.view().activity, taps_.elapsed(), reducesMotion()));
}

std::optional<QString> DhiruAbility::statusOverride() const {
    return DhiruWords::status(watch_.view());
}

std::optional<QString> DhiruAbility::accessibilityValue() const {
    const QString status = DhiruWords::status(watch_.view());
    return awake_.isHeld() ? DhiruWords::words("%1. %2").arg(status, awake_.words()) : status;
}

void DhiruAbility::togglePanel() {
    if (isOpen()) {
        panel_->dismiss();
        return;
    }
    if (comeOut(owner_, site_)) {
        openPanel();
    }
}

void DhiruAbility::openPanel() {
    makePanel();
    if (const auto screen = owner_.screen()) {
        panelView_->fitInto(screen->visibleFrame.height);
    }
    if (!panel_->present(PanelOpening::replacesActions)) {
        site_.tell(DhiruWords::words("There is no room for the watch here. Move Dhiru a little."));
        return;
    }
    watch_.setPanelOpen(true);
    panelView_->takeKeyboard();
    owner_.abilityChanged();
}

void DhiruAbility::makePanel() {
    if (panel_) {
        return;
    }
    auto view = std::make_unique<DhiruPanel>(watch_, awake_, site_.services);
    panelView_ = view.get();
    panelView_->onOpenUrl = [this](const QString& url) { open(url); };
    panel_ = std::make_unique<CharacterPanel>(owner_, site_, std::move(view));
    panel_->onDismissed = [this] {
        watch_.setPanelOpen(false);
        owner_.abilityChanged();
    };
}

bool DhiruAbility::clicked() {
    const bool wasOpen = isOpen();
    if (panel_) {
        panel_->dismiss();
    }
    return wasOpen;
}

void DhiruAbility::moved() {
    if (panel_) {
        panel_->anchor();
    }
}

std::vector<FellowCore::Rect> DhiruAbility::attachmentWindows() const {
    return panel_ ? panel_->frames() : std::vector<FellowCore::Rect>{};
}

QuickAction DhiruAbility::openAction() {
    QuickAction open;
    open.id = QStringLiteral("open");
    open.title = isOpen() ? DhiruWords::words("Close watch") : DhiruWords::words("Open watch");
    open.emphasis = Emphasis::primary;
    open.onPress = [this] { togglePanel(); };
    return open;
}

QuickAction DhiruAbility::browseAction() {
    QuickAction browse;
    browse.id = QStringLiteral("browse");
    browse.title = DhiruWords::words("Servers");
    browse.help = DhiruWords::words("Opens a server in your browser.");
    browse.onPress = [this] { // a link has no place for a menu
        if (!isOpen()) {
            togglePanel();
        }
    };
    browse.menu = [this] {
        auto menu = std::make_unique<QMenu>();
        for (const DevWatchServerRow& row : watch_.view().servers) {
            if (row.url) {
                const QString name = DhiruWords::clean(row.listener.process.name);
                const QString url = DhiruWords::plain(*row.url);
                const QAction* item =
                    menu->addAction(inMenu(DhiruWords::words("%1 :%2").arg(name).arg(row.listener.port)));
                QObject::connect(item, &QAction::triggered, menu.get(), [this, url] { open(url); });
            }
        }
        if (menu->isEmpty()) {
            menu->addAction(DhiruWords::words("No servers"))->setEnabled(false);
        }
        return menu;
    };
    return browse;
}

QuickAction DhiruAbility::awakeAction() {
    QuickAction awake;
    awake.id = QStringLiteral("awake");
    awake.title = awake_.isWanted() ? DhiruWords::words("Let it sleep") : DhiruWords::words("Keep awake");
    awake.help = awake_.words();
    awake.onPress = [this] { awake_.setWanted(!awake_.isWanted()); };
    return awake;
}

std::vector<QuickAction> DhiruAbility::actions() {
    return {openAction(), browseAction(), awakeAction()};
}

} // namespace DeskSprites
