#include "app/characters/mira/MiraController.h"

#include "app/characters/mira/MiraPresentation.h"
#include "core/sound/StereoPan.h"

#include <cmath>
#include <utility>

namespace DeskSprites {

using FellowCore::BreathingSession;
using FellowCore::BreathingStatus;
using FellowCore::InterfaceSoundCue;
using FellowCore::ManifestCharacterLayout;

namespace {
constexpr int farewellMilliseconds = 9000;
} // namespace

MiraController::MiraController(Companion companion, CharacterSite& site)
    : DesktopCharacter(std::move(companion), site.services), site_(site),
      clock_(site.services.system.clock()), preferences_(site.services.preferences),
      sprite_([this] { return MiraPoses(site_.resources / "builtin", art()); }, art().alphaRuns("idle")),
      file_(site.services), audio_(site.resources / "sounds", site.makeAudio),
      session_(preferences_.sessionSettings()) {
    if (const auto saved = file_.load(); saved && saved->status != BreathingStatus::idle) {
        session_ = *saved;
    }
    attachView(sprite_);
    frameTimer_.setSingleShot(true);
    frameTimer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&frameTimer_, &QTimer::timeout, &frameTimer_, [this] { look(); });
    farewell_.setSingleShot(true);
    farewell_.setInterval(farewellMilliseconds);
    QObject::connect(&farewell_, &QTimer::timeout, &farewell_, [this] { closeCue(); });
    restoreSizeAndFrame();
    presentationChanged();
}

MiraController::~MiraController() = default;

void MiraController::activate() {
    showWindow();
    presentationChanged();
}

void MiraController::deactivate() {
    interrupt(MiraPauseReason::hidden);
    closeCue();
    hideWindow();
}

void MiraController::start() {
    if (session_.status == BreathingStatus::running || !comeOut(*this, site_)) {
        return;
    }
    reason_.reset();
    if (!isUnderWay()) {
        session_ = BreathingSession(preferences_.sessionSettings());
    }
    playCue(InterfaceSoundCue::start); // before the guidance, which no cue interrupts
    session_.start(now());
    cueWanted_ = true;
    farewell_.stop();
    persist();
    look();
    news_.changed();
}

void MiraController::pause() {
    if (session_.status != BreathingStatus::running) {
        return;
    }
    if (session_.tick(now())) {
        finish();
        return;
    }
    session_.pause(now());
    stopShowing();
    closeCue();
    persist();
    playCue(InterfaceSoundCue::pause);
    stateChanged();
}

void MiraController::end() {
    if (!isUnderWay()) {
        return;
    }
    reason_.reset();
    session_ = BreathingSession(preferences_.sessionSettings());
    stopShowing();
    closeCue();
    persist();
    playCue(InterfaceSoundCue::end);
    stateChanged();
}

void MiraController::interrupt(MiraPauseReason reason) {
    if (session_.status != BreathingStatus::running) {
        return;
    }
    if (session_.tick(now())) {
        finish();
        return;
    }
    session_.pause(now());
    reason_ = reason;
    stopShowing();
    closeCue();
    persist();
    stateChanged();
}

void MiraController::finish() {
    stopShowing();
    persist();
    playCue(InterfaceSoundCue::miraComplete);
    cueWanted_ = true;
    showCue();
    if (cue_->isPresented()) {
        static_cast<MiraCue&>(cue_->bubble()).showEnd(session_.settings.rounds);
        farewell_.start();
    } else {
        site_.tell(MiraCue::farewell());
    }
    stateChanged();
}

void MiraController::stopShowing() {
    frameTimer_.stop();
    audio_.stop();
    sprite_.showAwake();
}

void MiraController::stateChanged() {
    presentationChanged();
    news_.changed();
}

void MiraController::look() {
    if (session_.status != BreathingStatus::running) {
        return;
    }
    const FellowCore::Instant at = now();
    if (session_.tick(at)) {
        finish();
        return;
    }
    const auto before = sprite_.breath();
    const MiraFrame frame = MiraFrame::at(session_.timeline(), session_.elapsed(at), motion());
    sprite_.showBreath(frame, motion());
    if (cue_ && cue_->isPresented()) {
        static_cast<MiraCue&>(cue_->bubble()).showFrame(frame, session_.settings.rounds);
    }
    if (!before || before->phase != frame.phase || before->round != frame.round) {
        phaseBegan(frame);
        if (before && before->round != frame.round) {
            persist(); // what a crash may cost is one round
        }
    }
    frameTimer_.start(static_cast<int>(std::ceil(frame.wait * 1000)));
}

void MiraController::phaseBegan(const MiraFrame& frame) {
    const FellowCore::Instant at = now();
    audio_.play(frame.phase, session_.phaseDuration(at), session_.phaseElapsed(at), mix());
    showCue();
    static_cast<MiraCue&>(cue_->bubble()).showFrame(frame, session_.settings.rounds);
    presentationChanged();
}

void MiraController::showCue() {
    if (!cue_) {
        cue_ = std::make_unique<CharacterPanel>(*this, site_, std::make_unique<MiraCue>());
        cue_->onDismissed = [this] { cueWanted_ = cueWanted_ && closing_ == CueClosing::byUs; };
    }
    if (cueWanted_ && !cue_->isPresented()) {
        if (const auto& frame = sprite_.breath()) { // its size depends on its words
            static_cast<MiraCue&>(cue_->bubble()).showFrame(*frame, session_.settings.rounds);
        }
        cue_->present(PanelOpening::besideActions);
    }
}

void MiraController::closeCue() {
    farewell_.stop();
    if (cue_) {
        closing_ = CueClosing::byUs;
        cue_->dismiss();
        closing_ = CueClosing::byUser;
    }
}

void MiraController::anchorCue() {
    if (cue_) {
        closing_ = CueClosing::byUs;
        cue_->anchor();
        closing_ = CueClosing::byUser;
    }
}

bool MiraController::isUnderWay() const {
    return session_.status == BreathingStatus::running || session_.status == BreathingStatus::paused;
}

const MiraCue* MiraController::cue() const {
    return cue_ && cue_->isPresented() ? static_cast<const MiraCue*>(&cue_->bubble()) : nullptr;
}

void MiraController::persist() {
    file_.save(session_, now());
}

void MiraController::preferencesChanged() {
    if (session_.status == BreathingStatus::idle) {
        session_ = BreathingSession(preferences_.sessionSettings());
    }
    audio_.setMix(mix());
    motionChanged();
    stateChanged();
}

void MiraController::motionChanged() {
    look();
}

MiraMotion MiraController::motion() const {
    return reducesMotion() || preferences_.reducedMotion() ? MiraMotion::reduced : MiraMotion::full;
}

BreathMix MiraController::mix() const {
    const FellowCore::Rect stands = geometry().artwork;
    const auto info = screen();
    return {preferences_.voice(), preferences_.breath(),
            FellowCore::stereoPan({stands.midX(), stands.midY()}, info ? info->frame : FellowCore::Rect{})};
}

bool MiraController::guidesBySound() const {
    return session_.status == BreathingStatus::running &&
           (preferences_.voice().on || preferences_.breath().on);
}

void MiraController::playCue(InterfaceSoundCue cue) {
    const SoundChoice voice = preferences_.voice();
    const SoundChoice breath = preferences_.breath();
    if (voice.on || breath.on) { // without either she is silent as a whole
        site_.playSound(cue, *this, voice.on ? voice.volume : breath.volume);
    }
}

CharacterPresentation MiraController::presentation() {
    return presentMira(*this);
}

std::vector<FellowCore::Rect> MiraController::attachments() const {
    return cue_ ? cue_->frames() : std::vector<FellowCore::Rect>{};
}

void MiraController::willSleep() {
    interrupt(MiraPauseReason::asleep);
    saveFrame(FrameSave::forced);
}

void MiraController::screenLocked() {
    interrupt(MiraPauseReason::locked);
}

ManifestCharacterLayout MiraController::adjusted(ManifestCharacterLayout layout) const {
    // The light on the ground is wider and deeper than the canvas.
    const double beside = std::ceil(MiraSpriteView::glowReach * layout.unit);
    const double below = std::ceil(MiraSpriteView::glowDepth * layout.unit);
    layout.size = {layout.size.width + 2 * beside, layout.size.height + below};
    layout.artwork = layout.artwork.translated(beside, below);
    layout.visible = layout.visible.translated(beside, below);
    layout.face = {layout.face.x + beside, layout.face.y + below};
    layout.ground = {layout.ground.x + beside, layout.ground.y + below};
    return layout;
}

void MiraController::frameChanged() {
    anchorCue();
}

} // namespace DeskSprites
