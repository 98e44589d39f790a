#include "app/characters/manifest/ManifestCharacterController.h"

#include "app/characters/TimerPresentation.h"

namespace DeskSprites {

using Behaviour = FellowCore::CharacterManifest::Behaviour;
using FellowCore::TimerStatus;

namespace {

constexpr int tickMilliseconds = 1000;

} // namespace

ManifestCharacterController::ManifestCharacterController(Companion companion, DesktopServices& services)
    : DesktopCharacter(std::move(companion), services), sprite_(this->companion().pack) {
    if (hasTimer()) {
        store_.emplace(this->companion().manifest, services);
        timer_ = store_->load(TimerRules::plain, now()).value_or(FellowCore::FocusTimer());
    }
    attachView(sprite_);
    tickTimer_.setInterval(tickMilliseconds);
    tickTimer_.setTimerType(Qt::CoarseTimer);
    QObject::connect(&tickTimer_, &QTimer::timeout, &tickTimer_, [this] { tick(); });
    blinkWork_.setSingleShot(true);
    QObject::connect(&blinkWork_, &QTimer::timeout, &blinkWork_, [this] { blink(); });
    restoreSizeAndFrame();
    updatePose();
}

ManifestCharacterController::~ManifestCharacterController() = default;

void ManifestCharacterController::setAbility(std::unique_ptr<ManifestCharacterAbility> ability) {
    ability_ = std::move(ability);
    sprite_.drawOverlay = [this](QPainter& painter, const QRectF& art, double unit) {
        ability_->draw(painter, art, unit);
    };
    if (ability_->acceptsText()) {
        sprite_.onDropText = [this](const QString& text) { ability_->textDropped(text); };
        surface().setAcceptsText(true);
    }
    updatePose();
}

void ManifestCharacterController::abilityChanged() {
    if (blinkWork_.isActive() != blinks()) {
        scheduleBlink();
    }
    updatePose();
    sprite_.refreshOverlay();
    presentationChanged();
}

bool ManifestCharacterController::hasTimer() const {
    return companion().manifest.has(Behaviour::timer);
}

FellowCore::Instant ManifestCharacterController::now() const {
    return services().system.clock().wall();
}

void ManifestCharacterController::saveTimer() {
    if (store_) {
        store_->save(timer_);
    }
}

void ManifestCharacterController::prepareForActivation() {
    updatePose();
}

void ManifestCharacterController::activate() {
    showWindow();
    scheduleBlink();
    if (ability_) {
        ability_->activate();
    }
    timerChanged(); // a phase may run that was never stopped, because the program died in it
}

void ManifestCharacterController::deactivate() {
    if (ability_) {
        ability_->deactivate();
    }
    pauseTimer();
    blinkWork_.stop();
    blinking_ = false;
    sprite_.setPose("idle");
    hideWindow();
}

void ManifestCharacterController::performPrimaryAction() {
    if (!isShown() || !hasTimer()) {
        return;
    }
    timer_.performPrimaryAction(now());
    saveTimer();
    timerChanged();
}

void ManifestCharacterController::reset() {
    timer_.reset();
    saveTimer();
    timerChanged();
}

void ManifestCharacterController::pauseTimer() {
    timer_.pause(now());
    saveTimer();
    timerChanged();
}

void ManifestCharacterController::updateTimerSettings(const FellowCore::TimerSettings& settings) {
    timer_.updateSettings(settings);
    saveTimer();
    presentationChanged();
}

void ManifestCharacterController::tick() {
    if (timer_.tick(now())) {
        saveTimer();
    }
    timerChanged();
}

void ManifestCharacterController::timerChanged() {
    updateTickTimer();
    updatePose();
    presentationChanged();
}

void ManifestCharacterController::updateTickTimer() {
    const bool wanted = hasTimer() && timer_.status == TimerStatus::running;
    if (wanted && !tickTimer_.isActive()) {
        tickTimer_.start();
    } else if (!wanted) {
        tickTimer_.stop();
    }
}

void ManifestCharacterController::updatePose() {
    std::string pose = hasTimer() ? std::string(FellowCore::timerPose(timer_.status)) : "idle";
    if (const auto own = ability_ ? ability_->artworkPose() : std::nullopt) {
        pose = *own;
    }
    sprite_.setPose(pose);
}

bool ManifestCharacterController::blinks() const {
    return isShown() && companion().manifest.has(Behaviour::blink) && !reducesMotion() &&
           (!ability_ || ability_->canBlink());
}

void ManifestCharacterController::scheduleBlink() {
    blinkWork_.stop();
    blinking_ = false;
    updatePose();
    if (!blinks()) {
        return;
    }
    const FellowCore::Seconds interval = ability_ ? ability_->blinkInterval() : 4.6;
    blinkWork_.start(static_cast<int>(interval * 1000));
}

void ManifestCharacterController::blink() {
    if (blinking_) {
        scheduleBlink();
        return;
    }
    // Closed eyes are drawn for the idle pose; over any other the body would jump.
    if (sprite_.pose() == "idle") {
        sprite_.setPose("blink");
    }
    blinking_ = true;
    const FellowCore::Seconds duration = ability_ ? ability_->blinkDuration() : 0.14;
    blinkWork_.start(static_cast<int>(duration * 1000));
}

QString ManifestCharacterController::primaryTitle() const {
    return hasTimer() ? QString::fromStdString(timer_.battiPresentation().primaryTitle) : QString();
}

QString ManifestCharacterController::status() const {
    if (hasTimer()) {
        return QString::fromStdString(timer_.battiPresentation().statusTitle);
    }
    const auto own = ability_ ? ability_->statusOverride() : std::nullopt;
    return own.value_or(QString::fromStdString(companion().manifest.role));
}

CharacterPresentation ManifestCharacterController::timerPresentation() {
    CharacterPresentation shown = presentTimer(timer_, timer_.battiPresentation(), now());
    shown.actions.push_back(timerPrimaryAction(timer_, primaryTitle(), [this] { performPrimaryAction(); }));
    shown.actions.push_back(timerResetAction(timer_, [this] { reset(); }));
    return shown;
}

CharacterPresentation ManifestCharacterController::presentation() {
    CharacterPresentation shown = hasTimer() ? timerPresentation() : CharacterPresentation{};
    shown.status = status();
    if (!hasTimer()) {
        shown.spoken = shown.status;
    }
    if (ability_) {
        shown.badge = hasTimer() ? shown.badge : ability_->badge();
        shown.spoken = ability_->accessibilityValue().value_or(shown.spoken);
        for (QuickAction& action : ability_->actions()) {
            shown.actions.push_back(std::move(action));
        }
    }
    return shown;
}

std::vector<FellowCore::Rect> ManifestCharacterController::attachments() const {
    return ability_ ? ability_->attachmentWindows() : std::vector<FellowCore::Rect>{};
}

bool ManifestCharacterController::clicked() {
    return ability_ && ability_->clicked();
}

void ManifestCharacterController::willSleep() {
    if (ability_) {
        ability_->pause();
    }
    pauseTimer();
}

void ManifestCharacterController::didWake() {
    if (ability_ && isShown()) {
        ability_->resumeMonitoring();
    }
}

void ManifestCharacterController::screenLocked() {
    if (ability_) {
        ability_->screenLocked();
    }
}

void ManifestCharacterController::screenUnlocked() {
    if (ability_) {
        ability_->screenUnlocked();
    }
}

void ManifestCharacterController::motionChanged() {
    scheduleBlink();
    if (ability_) {
        ability_->motionChanged();
    }
}

void ManifestCharacterController::frameChanged() {
    if (ability_) {
        ability_->moved();
    }
}

} // namespace DeskSprites
