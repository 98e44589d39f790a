#include "app/characters/thumka/ThumkaAbility.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/thumka/ThumkaPanel.h"
#include "app/characters/thumka/ThumkaPoseTimes.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::NowPlayingCommand;
using FellowCore::NowPlayingState;
using Mode = NowPlayingState::Mode;

namespace {

constexpr std::string_view titlesKey = "sprites.thumka.titles.v1";

QString words(const char* source) {
    return QCoreApplication::translate("Thumka", source);
}

/// Late by less than a millisecond, never early: at the time told the pose is another.
std::chrono::milliseconds waitOf(FellowCore::Seconds time) {
    return std::chrono::milliseconds(std::max(1LL, std::llround(std::ceil(time * 1000))));
}

} // namespace

ThumkaAbility::ThumkaAbility(ManifestCharacterController& owner, CharacterSite& site,
                             const QString& mediaProgram, ApplicationName nameOf, NowPlayingPatience patience)
    : owner_(owner), site_(site), nameOf_(std::move(nameOf)), music_(mediaProgram, patience),
      title_(owner, site) {
    for (QTimer* timer : {&pose_, &titleEnd_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    QObject::connect(&pose_, &QTimer::timeout, &pose_, [this] { poseIsDue(); });
    QObject::connect(&titleEnd_, &QTimer::timeout, &titleEnd_, [this] { titleIsDue(); });
    QObject::connect(&music_, &NowPlayingService::changed, &pose_, [this] { musicChanged(); });
}

ThumkaAbility::~ThumkaAbility() = default;

FellowCore::MonotonicInstant ThumkaAbility::now() const {
    return site_.services.system.clock().monotonic();
}

bool ThumkaAbility::reducesMotion() const {
    return site_.services.system.motion().isReduced();
}

void ThumkaAbility::activate() {
    active_ = true;
    state_ = {};
    state_.quietSince = now(); // whoever comes out is awake
    music_.setFollowing(true);
    schedulePose();
}

void ThumkaAbility::deactivate() {
    active_ = false;
    pose_.stop();
    title_.dismiss();
    if (panel_) {
        panel_->dismiss();
    }
    music_.setFollowing(false);
}

void ThumkaAbility::screenLocked() {
    locked_ = true;
    title_.dismiss();
    schedulePose();
}

void ThumkaAbility::screenUnlocked() {
    locked_ = false;
    poseIsDue();
}

void ThumkaAbility::motionChanged() {
    poseIsDue();
}

void ThumkaAbility::musicChanged() {
    const FellowCore::MonotonicInstant at = now();
    const auto last = state_.announcement ? std::optional(state_.announcedAt) : std::nullopt;
    state_.update(music_.news().track, music_.isAvailable(), at);
    mode_ = state_.mode(at);
    if (!state_.announcement) {
        title_.dismiss();
    } else if (state_.announcedAt != last) {
        sayTitle();
    }
    owner_.abilityChanged();
    schedulePose();
}

void ThumkaAbility::sayTitle() {
    if (!isSeen() || isOpen() || !saysTitles()) { // an open panel says it already
        title_.dismiss();
        return;
    }
    title_.show(ThumkaWords::title(*state_.track));
    titleEnd_.start(waitOf(NowPlayingState::bubbleTime));
}

void ThumkaAbility::titleIsDue() {
    const FellowCore::MonotonicInstant at = now();
    if (title_.isPresented() && state_.bubble(at)) {
        titleEnd_.start(waitOf(NowPlayingState::bubbleTime - (at - state_.announcedAt)));
    } else {
        title_.dismiss();
    }
}

void ThumkaAbility::poseIsDue() {
    const Mode mode = state_.mode(now());
    if (mode != mode_) { // she has nodded off
        mode_ = mode;
        owner_.abilityChanged();
    } else {
        owner_.poseChanged();
    }
    schedulePose();
}

void ThumkaAbility::schedulePose() {
    const auto wait = isSeen() ? untilNextPose(state_, now(), reducesMotion()) : std::nullopt;
    if (wait) {
        pose_.start(waitOf(*wait));
    } else {
        pose_.stop();
    }
}

std::optional<std::string> ThumkaAbility::artworkPose() const {
    return active_ ? std::optional(std::string(state_.pose(now(), reducesMotion()))) : std::nullopt;
}

bool ThumkaAbility::canBlink() const {
    return mode_ == Mode::idle; // her eyes are closed in her sleep, and elsewhere in the dance
}

std::optional<QString> ThumkaAbility::statusOverride() const {
    return ThumkaWords::status(music_.news());
}

bool ThumkaAbility::saysTitles() const {
    return site_.services.preferences.boolean(titlesKey).value_or(true);
}

void ThumkaAbility::setSaysTitles(bool says) {
    site_.services.preferences.setBoolean(titlesKey, says);
    if (!says) {
        title_.dismiss();
    }
}

void ThumkaAbility::togglePanel() {
    if (isOpen()) {
        panel_->dismiss();
        return;
    }
    if (comeOut(owner_, site_)) {
        openPanel();
    }
}

void ThumkaAbility::openPanel() {
    makePanel();
    title_.dismiss();
    if (!panel_->present(PanelOpening::replacesActions)) {
        site_.tell(words("There is no room for the panel here. Move Thumka a little."));
        return;
    }
    panelView_->takeKeyboard();
    owner_.abilityChanged();
}

void ThumkaAbility::makePanel() {
    if (panel_) {
        return;
    }
    auto view = std::make_unique<ThumkaPanel>(music_, nameOf_);
    panelView_ = view.get();
    panel_ = std::make_unique<CharacterPanel>(owner_, site_, std::move(view));
    panel_->onDismissed = [this] { owner_.abilityChanged(); };
}

bool ThumkaAbility::clicked() {
    title_.dismiss();
    const bool wasOpen = isOpen();
    if (wasOpen) {
        panel_->dismiss();
    }
    return wasOpen;
}

void ThumkaAbility::moved() {
    title_.anchor();
    if (panel_) {
        panel_->anchor();
    }
}

std::vector<FellowCore::Rect> ThumkaAbility::attachmentWindows() const {
    std::vector<FellowCore::Rect> windows = title_.frames();
    if (panel_) {
        const auto own = panel_->frames();
        windows.insert(windows.end(), own.begin(), own.end());
    }
    return windows;
}

QuickAction ThumkaAbility::openAction(Emphasis emphasis) {
    QuickAction open;
    open.id = QStringLiteral("open");
    open.title = isOpen() ? words("Close music") : words("Open music");
    open.emphasis = emphasis;
    open.onPress = [this] { togglePanel(); };
    return open;
}

QuickAction ThumkaAbility::commandAction(const char* id, const QString& title, NowPlayingCommand command,
                                         bool enabled) {
    QuickAction action;
    action.id = QLatin1String(id);
    action.title = title;
    action.enabled = enabled;
    action.onPress = [this, command] { music_.send(command); };
    return action;
}

std::vector<QuickAction> ThumkaAbility::actions() {
    const FellowCore::NowPlayingControls& can = music_.news().controls;
    std::vector<QuickAction> offered;
    if (can.canPlayPause) {
        const QString title = mode_ == Mode::dancing ? words("Pause") : words("Play");
        offered.push_back(commandAction("play", title, NowPlayingCommand::playPause, true));
        offered.back().emphasis = Emphasis::primary;
    }
    if (can.canGoNext || can.canGoPrevious) {
        offered.push_back(
            commandAction("previous", words("Previous"), NowPlayingCommand::previous, can.canGoPrevious));
        offered.push_back(commandAction("next", words("Next"), NowPlayingCommand::next, can.canGoNext));
    }
    offered.push_back(openAction(can.canPlayPause ? Emphasis::plain : Emphasis::primary));
    return offered;
}

} // namespace DeskSprites
