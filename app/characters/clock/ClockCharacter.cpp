#include "app/characters/clock/ClockCharacter.h"

#include "app/characters/clock/ClockPanel.h"
#include "app/characters/manifest/ManifestCharacterController.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace DeskSprites {

using FellowCore::Calendar;
using FellowCore::Instant;
using FellowCore::WorldClockCity;
using FellowCore::WorldClockRow;
using FellowCore::WorldClockState;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Clock", source);
}

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

std::optional<Calendar> zoneOf(const WorldClockRow& row) {
    return Calendar::inTimeZone(WorldClockCity::zoneOf(row.identifier));
}

} // namespace

ClockCharacter::ClockCharacter(ManifestCharacterController& owner, CharacterSite& site,
                               ClockKeeper::LocalCalendar calendar)
    : owner_(owner), site_(site), keeper_(std::make_unique<ClockKeeper>(site.services, std::move(calendar))),
      faces_(owner.companion().pack->directory(), owner.companion().manifest.grid), bell_(owner, site) {
    bell_.onSwing = [this] { owner_.abilityChanged(); };
    connect(keeper_.get(), &ClockKeeper::changed, this, &ClockCharacter::keeperChanged);
    connect(keeper_.get(), &ClockKeeper::travelled, this, [this] {
        look_.reset();
        owner_.overlayChanged();
        Q_EMIT changed();
    });
    connect(keeper_.get(), &ClockKeeper::minuteMet, this, &ClockCharacter::minuteMet);
}

ClockCharacter::~ClockCharacter() = default;

const FellowCore::WorldClockCatalog& ClockCharacter::catalog() const {
    return keeper_->catalog();
}

const WorldClockState& ClockCharacter::state() const {
    return keeper_->state();
}

const std::string& ClockCharacter::systemTimeZone() const {
    return keeper_->systemTimeZone();
}

FellowCore::WorldClockFormatter& ClockCharacter::formatter() {
    return keeper_->formatter();
}

bool ClockCharacter::searchIsReady() const {
    return keeper_->isSearchReady();
}

void ClockCharacter::prepareSearch() {
    keeper_->prepareSearch();
}

bool ClockCharacter::change(const std::function<bool(WorldClockState&)>& change) {
    return keeper_->change(change);
}

Instant ClockCharacter::shownDate() const {
    return keeper_->shownDate();
}

const std::optional<FellowCore::WorldClockTravel>& ClockCharacter::travel() const {
    return keeper_->travel();
}

bool ClockCharacter::isPreviewing() const {
    return keeper_->isPreviewing();
}

void ClockCharacter::preview(double atMinute) {
    keeper_->preview(atMinute);
}

void ClockCharacter::returnToNow() {
    keeper_->returnToNow();
}

std::vector<WorldClockRow> ClockCharacter::rows() {
    return keeper_->rows();
}

bool ClockCharacter::ringsHourly() const {
    return bell_.ringsHourly();
}

void ClockCharacter::setRingsHourly(bool rings) {
    bell_.setRingsHourly(rings);
}

void ClockCharacter::activate() {
    active_ = true;
    locked_ = false; // somebody has just called for it
    keeper_->watch();
}

void ClockCharacter::deactivate() {
    active_ = false;
    keeper_->rest();
    bell_.hush();
    if (panel_) {
        panel_->dismiss();
    }
}

void ClockCharacter::pause() {
    keeper_->rest();
    bell_.hush();
}

void ClockCharacter::resumeMonitoring() {
    keeper_->watch();
}

void ClockCharacter::screenLocked() {
    locked_ = true;
    bell_.hush();
}

void ClockCharacter::screenUnlocked() {
    locked_ = false;
}

void ClockCharacter::keeperChanged() {
    look_.reset();
    owner_.abilityChanged();
    Q_EMIT changed();
}

void ClockCharacter::minuteMet(Instant minute) {
    if (!active_ || locked_ || !bell_.ringsHourly() || site_.isGuidedBySound()) {
        return;
    }
    constexpr FellowCore::Seconds hour = 3600;
    const Calendar home = keeper_->homeCalendar();
    const FellowCore::Seconds local = minute.toUnix() + home.utcOffset(minute);
    if (std::fmod(local, hour) == 0) {
        bell_.ring();
    }
}

std::array<std::optional<WorldClockRow>, 2> ClockCharacter::sides() const {
    std::vector<WorldClockRow> pinned = keeper_->faces();
    std::erase_if(pinned, [](const WorldClockRow& row) { return !row.isPinned; });
    std::ranges::stable_sort(pinned, {}, &WorldClockRow::differenceSeconds);
    if (pinned.empty()) {
        return {};
    }
    if (pinned.size() > 1) {
        return {pinned.front(), pinned.back()};
    }
    const bool isBehind = pinned.front().differenceSeconds < 0;
    return isBehind ? std::array<std::optional<WorldClockRow>, 2>{pinned.front(), std::nullopt}
                    : std::array<std::optional<WorldClockRow>, 2>{std::nullopt, pinned.front()};
}

ClockFaces::Look ClockCharacter::look() const {
    ClockFaces::Look look;
    if (!keeper_->isReady()) {
        return look; // the dials are bare for the moment in which the table is read
    }
    const Instant at = keeper_->shownDate();
    look.home = faces_.homeHands({at, keeper_->homeCalendar()});
    const auto beside = sides();
    for (std::size_t side = 0; side < beside.size(); ++side) {
        if (const auto zone = beside[side] ? zoneOf(*beside[side]) : std::nullopt) {
            look.sides[side] = {faces_.sideHands(side, {at, *zone}), text(beside[side]->city)};
        }
    }
    return look;
}

void ClockCharacter::draw(QPainter& painter, const QRectF& art, double) {
    if (!look_) {
        look_ = look();
    }
    faces_.draw(painter, art, *look_);
}

void ClockCharacter::togglePanel() {
    if (isPanelOpen()) {
        panel_->dismiss();
        return;
    }
    if (comeOut(owner_, site_)) {
        openPanel();
    }
}

void ClockCharacter::openPanel() {
    makePanel();
    if (const auto screen = owner_.screen()) {
        panelView_->fitInto(screen->visibleFrame.height);
    }
    if (!panel_->present(PanelOpening::replacesActions)) {
        site_.tell(words("There is no room for the clocks here. Move Ghanta Ghar a little."));
        return;
    }
    keeper_->setTableInUse(true);
    panelView_->takeKeyboard();
    owner_.abilityChanged();
}

void ClockCharacter::makePanel() {
    if (panel_) {
        return;
    }
    auto view = std::make_unique<ClockPanel>(*this);
    panelView_ = view.get();
    panelView_->onSettings = [this] {
        panel_->dismiss();
        site_.commands.openLibrary(owner_.identifier());
    };
    panel_ = std::make_unique<CharacterPanel>(owner_, site_, std::move(view));
    panel_->onDismissed = [this] {
        keeper_->setTableInUse(false);
        keeper_->returnToNow();
        owner_.abilityChanged();
    };
}

ClockPanel* ClockCharacter::panel() const {
    return panelView_;
}

bool ClockCharacter::clicked() {
    const bool wasOpen = isPanelOpen();
    if (wasOpen) {
        panel_->dismiss();
    }
    return wasOpen;
}

void ClockCharacter::motionChanged() {
    owner_.abilityChanged();
}

void ClockCharacter::moved() {
    if (panel_) {
        panel_->anchor();
    }
}

std::vector<FellowCore::Rect> ClockCharacter::attachmentWindows() const {
    return panel_ ? panel_->frames() : std::vector<FellowCore::Rect>{};
}

std::optional<std::string> ClockCharacter::artworkPose() const {
    const bool swings = bell_.isSwinging() && !site_.services.system.motion().isReduced();
    return swings ? std::optional<std::string>("ring") : std::nullopt;
}

std::optional<QString> ClockCharacter::statusOverride() const {
    if (!keeper_->isReady()) {
        return std::nullopt;
    }
    const WorldClockRow home = keeper_->faces().front();
    return words("%1 in %2").arg(text(home.time), text(home.city));
}

std::optional<QString> ClockCharacter::accessibilityValue() const {
    if (!keeper_->isReady()) {
        return std::nullopt;
    }
    const WorldClockRow home = keeper_->faces().front();
    QStringList said{words("%1 in %2, %3").arg(text(home.time), text(home.city), text(home.dayLabel))};
    for (const auto& row : sides()) {
        if (row) {
            said.append(
                words("%1 in %2, %3").arg(text(row->time), text(row->city), text(row->spokenDifference)));
        }
    }
    return said.join(QStringLiteral("; ")); // a day may end with a full stop
}

void ClockCharacter::copyHomeTime() {
    const QString line = text(FellowCore::WorldClockPresentation::text(keeper_->faces().front()));
    QGuiApplication::clipboard()->setText(line);
    site_.tell(words("Copied: %1").arg(line));
}

std::vector<QuickAction> ClockCharacter::actions() {
    QuickAction open;
    open.id = QStringLiteral("open");
    open.title = isPanelOpen() ? words("Close clocks") : words("Open clocks");
    open.emphasis = Emphasis::primary;
    open.onPress = [this] { togglePanel(); };
    QuickAction copy;
    copy.id = QStringLiteral("copy");
    copy.title = words("Copy time");
    copy.help = words("Copies the time at home as text.");
    copy.onPress = [this] { copyHomeTime(); };
    return {open, copy};
}

} // namespace DeskSprites
