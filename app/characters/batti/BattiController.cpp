#include "app/characters/batti/BattiController.h"

#include "app/characters/TimerPresentation.h"
#include "core/art/DesktopSize.h"
#include "core/host/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
using FellowCore::BattiPauseReason;
using FellowCore::InterfaceSoundCue;
using FellowCore::ManifestCharacterLayout;
using FellowCore::TimerStatus;

namespace {

constexpr double smallestSprite = 120;
constexpr double largestSprite = 1000;
constexpr double faceShare = 0.61; ///< of the canvas's height, from its bottom
constexpr int secondMilliseconds = 1000;
constexpr double pastSecond = 0.002; ///< seconds behind a whole one at which the badge surely shows the next
constexpr double badgeMargin = 2;    ///< points between the badge and the screen's edge

double clampedSprite(double height) {
    return std::isfinite(height) ? std::clamp(height, smallestSprite, largestSprite)
                                 : FellowCore::DesktopSize::standardHeight;
}

} // namespace

BattiController::BattiController(Companion companion, std::array<QImage, 3> lamps, DesktopServices& services)
    : DesktopCharacter(std::move(companion), services), lamps_(lamps),
      sprite_(this->companion().pack, std::move(lamps), services.system.clock()),
      store_(this->companion().manifest, services) {
    if (auto saved = store_.load(TimerRules::batti, now())) {
        timerSession_.timer = *saved;
    }
    readViewState();
    attachView(sprite_);
    sessionTimer_.setSingleShot(true);
    sessionTimer_.setTimerType(
        Qt::PreciseTimer); // a coarse one may be early, and would wake twice for each second
    QObject::connect(&sessionTimer_, &QTimer::timeout, &sessionTimer_, [this] { tick(); });
    sprite_.setMirrored(mirrored_);
    sprite_.setMotion(false);
    restoreSizeAndFrame();
    updateDisplay();
    persist();
}

BattiController::~BattiController() = default;

FellowCore::Instant BattiController::now() const {
    return services().system.clock().wall();
}

void BattiController::readViewState() {
    const auto& preferences = services().preferences;
    spriteHeight_ = clampedSprite(preferences.number(Keys::battiHeight).value_or(spriteHeight_));
    mirrored_ = preferences.boolean(Keys::battiMirrored).value_or(false);
    sounds_ = preferences.boolean(Keys::battiSounds).value_or(true);
    reducedMotion_ = preferences.boolean(Keys::battiReducedMotion).value_or(false);
}

void BattiController::activate() {
    showWindow();
    motionChanged();
    updateDisplay();
}

void BattiController::deactivate() {
    pause(BattiPauseReason::hidden);
    persist();
    timerChanged();
    sprite_.setMotion(false);
    sprite_.clearFlashes();
    hideWindow();
}

void BattiController::pause(BattiPauseReason reason) {
    FellowCore::FocusTimer& timer = timerSession_.timer;
    const bool wasRunning = timer.status == TimerStatus::running;
    timer.pause(now());
    if (wasRunning && timer.status == TimerStatus::paused) {
        battiPauseReason_ = reason;
    }
}

void BattiController::primaryAction() {
    battiPauseReason_.reset();
    FellowCore::FocusTimer& timer = timerSession_.timer;
    const bool wasRunning = timer.status == TimerStatus::running;
    const bool endedPhase = timer.performBattiPrimaryAction(now());
    if (endedPhase && sounds_) {
        cue(InterfaceSoundCue::complete);
    }
    persist();
    timerChanged();
    if (endedPhase) {
        sprite_.flashCompletion();
    } else {
        cue(wasRunning ? InterfaceSoundCue::pause : InterfaceSoundCue::start);
    }
}

void BattiController::resetSession() {
    battiPauseReason_.reset();
    timerSession_.timer.reset();
    persist();
    timerChanged();
    cue(InterfaceSoundCue::end);
}

void BattiController::tick() {
    if (!timerSession_.timer.tickForBatti(now())) {
        timerChanged();
        return;
    }
    persist();
    if (sounds_) {
        cue(InterfaceSoundCue::complete);
    }
    if (onPhaseEnded) {
        onPhaseEnded();
    }
    timerChanged();
    sprite_.flashCompletion();
}

void BattiController::persist() {
    store_.save(timerSession_.persistent());
}

void BattiController::cue(InterfaceSoundCue cue) {
    if (onCue) {
        onCue(cue);
    }
}

void BattiController::timerChanged() {
    updateSessionTimer();
    updateDisplay();
}

void BattiController::updateSessionTimer() {
    const FellowCore::FocusTimer& timer = timerSession_.timer;
    if (timer.status != TimerStatus::running) {
        sessionTimer_.stop();
        return;
    }
    // The next look falls on the moment at which the badge shows another second, so that it never skips one.
    const double remaining = timer.timeRemaining(now());
    const double wait = remaining - std::floor(remaining) + pastSecond;
    sessionTimer_.start(static_cast<int>(std::ceil(wait * secondMilliseconds)));
}

FellowCore::BattiTimerPresentation BattiController::timerPresentation() const {
    return {timerSession_.timer.phase, timerSession_.timer.status, battiPauseReason_};
}

void BattiController::updateDisplay() {
    const FellowCore::BattiTimerPresentation shown = timerPresentation();
    sprite_.setLight(shown.light, shown.pulses);
    sprite_.setBadge(
        QString::fromStdString(FellowCore::timerBadge(timerSession_.timer.timeRemaining(now()))));
    presentationChanged();
}

CharacterPresentation BattiController::presentation() {
    const FellowCore::FocusTimer& timer = timerSession_.timer;
    const FellowCore::BattiTimerPresentation words = timerPresentation();
    CharacterPresentation shown = presentTimer(timer, words, now());
    shown.actions.push_back(
        timerPrimaryAction(timer, QString::fromStdString(words.primaryTitle), [this] { primaryAction(); }));
    shown.actions.push_back(timerResetAction(timer, [this] { resetSession(); }));
    return shown;
}

QImage BattiController::portrait() const {
    QImage picture = DesktopCharacter::portrait();
    QPainter(&picture).drawImage(0, 0, lamps_.at(static_cast<std::size_t>(PixelSpriteView::Light::amber)));
    return picture;
}

void BattiController::applySettings(const FellowCore::TimerSettings& settings) {
    timerSession_.updateSettings(settings);
    persist();
    timerChanged();
}

void BattiController::setSounds(bool sounds) {
    sounds_ = sounds;
    services().preferences.setBoolean(Keys::battiSounds, sounds);
}

void BattiController::setMirrored(bool mirrored) {
    mirrored_ = mirrored;
    services().preferences.setBoolean(Keys::battiMirrored, mirrored);
    sprite_.setMirrored(mirrored);
    setVisibleHeight(visibleHeight(), FellowCore::Sizing::snapped);
}

void BattiController::setReducedMotion(bool reduced) {
    reducedMotion_ = reduced;
    services().preferences.setBoolean(Keys::battiReducedMotion, reduced);
    motionChanged();
}

void BattiController::setVisibleHeight(double height, FellowCore::Sizing sizing) {
    DesktopCharacter::setVisibleHeight(height, sizing);
    const double fraction = art().scaleReferenceHeight() / art().manifest().grid.height;
    spriteHeight_ = clampedSprite(FellowCore::DesktopSize::canvasHeight(visibleHeight(), fraction));
    if (sizing == FellowCore::Sizing::snapped) {
        services().preferences.setNumber(Keys::battiHeight, spriteHeight_);
    }
}

void BattiController::willSleep() {
    pause(BattiPauseReason::asleep);
    persist();
    timerChanged();
    saveFrame(FrameSave::forced);
}

void BattiController::didWake() {
    tick();
}

void BattiController::motionChanged() {
    sprite_.setMotion(isShown() && !reducedMotion_ && !reducesMotion());
}

ManifestCharacterLayout BattiController::adjusted(ManifestCharacterLayout layout) const {
    if (mirrored_) {
        const double width = layout.size.width;
        layout.visible.x = width - layout.visible.maxX();
        layout.face.x = width - layout.face.x;
        layout.ground.x = width - layout.ground.x;
    }
    return layout;
}

double BattiController::faceHeight(const ManifestCharacterLayout& layout) const {
    return layout.artwork.minY() + faceShare * layout.artwork.height;
}

void BattiController::frameChanged() {
    if (const auto info = screen()) {
        sprite_.setBadgeLift(
            std::max(0.0, std::ceil(info->visibleFrame.minY() + badgeMargin - surface().frame().y)));
    }
}

} // namespace DeskSprites
