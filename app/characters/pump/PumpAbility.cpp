#include "app/characters/pump/PumpAbility.h"

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/pump/PumpPanel.h"
#include "app/characters/pump/PumpPresentation.h"
#include "app/characters/pump/SessionMenuItem.h"
#include "core/agents/PumpAgentLamp.h"
#include "core/pump/PumpDigitMotion.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::InterfaceSoundCue;
using FellowCore::PumpAgentEvent;
using FellowCore::PumpAgentLamp;
using FellowCore::PumpAgentPhase;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Pump", source);
}

} // namespace

PumpAbility::PumpAbility(ManifestCharacterController& owner, CharacterSite& site,
                         PumpUsageService::MakeReader makeReader, std::filesystem::path hookProgram)
    : owner_(owner), site_(site), face_(owner.companion().pack->directory(), owner.companion().manifest.grid),
      usage_(site.services, std::move(makeReader)), agents_(site.services),
      connections_(site.services, std::move(hookProgram)), roll_(site.services.system.clock()),
      cue_(owner, site) {
    roll_.onChange = [this] { owner_.overlayChanged(); };
    cue_.onReturn = [this](const PumpAgentEvent& session) { goTo(session); };
    agents_.onNeedsYou = [this](const std::vector<PumpAgentEvent>& alerts) { needsYou(alerts); };
    blink_.setSingleShot(true);
    blink_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&blink_, &QTimer::timeout, &blink_, [this] {
        owner_.overlayChanged();
        scheduleBlink();
    });
    QObject::connect(&usage_, &PumpUsageService::changed, &blink_, [this] { usageChanged(); });
    QObject::connect(&agents_, &PumpAgentService::changed, &blink_, [this] { sessionsChanged(); });
    QObject::connect(&connections_, &PumpConnections::settled, &blink_, [this] {
        agents_.refresh();
        usage_.refresh();
    });
}

PumpAbility::~PumpAbility() = default;

void PumpAbility::activate() {
    watch(true);
}

void PumpAbility::deactivate() {
    watch(false);
    cue_.dismiss();
    if (panel_) {
        panel_->dismiss();
    }
}

void PumpAbility::pause() {
    watch(false);
}

void PumpAbility::resumeMonitoring() {
    watch(true);
}

void PumpAbility::watch(bool active) {
    active_ = active;
    usage_.setDesktopActive(active);
    agents_.setDesktopActive(active);
    scheduleBlink();
    if (!active) {
        roll_.settle();
    }
}

bool PumpAbility::reducesMotion() const {
    return site_.services.system.motion().isReduced();
}

FellowCore::Instant PumpAbility::now() const {
    return site_.services.system.clock().wall();
}

void PumpAbility::usageChanged() {
    const auto left = usage_.snapshot() ? usage_.snapshot()->displayLeftPercent() : std::nullopt;
    const std::string glyphs = FellowCore::PumpDigitMotion::glyphs(left);
    roll_.show(QString::fromStdString(glyphs), active_ && !reducesMotion());
    owner_.abilityChanged();
}

void PumpAbility::sessionsChanged() {
    if (const auto key = cue_.cueKey()) {
        const auto asks = std::ranges::any_of(agents_.sessions(), [&](const PumpAgentEvent& session) {
            return session.key() == *key && session.event == PumpAgentPhase::needsYou;
        });
        if (!asks) {
            cue_.dismiss(); // someone has seen to it
        }
    }
    scheduleBlink();
    owner_.abilityChanged();
}

void PumpAbility::needsYou(const std::vector<PumpAgentEvent>& alerts) {
    // Within one look at the file a session may have asked and been answered.
    const auto pending = std::ranges::find_if(alerts, [this](const PumpAgentEvent& alert) {
        return std::ranges::find(agents_.sessions(), alert) != agents_.sessions().end();
    });
    if (!active_ || pending == alerts.end()) {
        return;
    }
    site_.playSound(InterfaceSoundCue::pumpNeedsYou, owner_, 1);
    if (!isOpen()) { // the panel says it already
        cue_.show(*pending);
    }
}

void PumpAbility::goTo(const PumpAgentEvent& session) {
    if (cue_.cueKey() == session.key()) {
        cue_.dismiss();
    }
    agents_.focus(session);
}

void PumpAbility::scheduleBlink() {
    const auto urgent = agents_.urgent();
    const bool blinks = active_ && !reducesMotion() && urgent && urgent->event == PumpAgentPhase::needsYou;
    if (!blinks) {
        blink_.stop();
        return;
    }
    const FellowCore::Seconds within = std::fmod(now().sinceReference, PumpAgentLamp::blinkHalf);
    blink_.start(static_cast<int>(std::ceil((PumpAgentLamp::blinkHalf - std::max(0.0, within)) * 1000)));
}

void PumpAbility::motionChanged() {
    if (reducesMotion()) {
        roll_.settle();
    }
    scheduleBlink();
    owner_.abilityChanged();
}

PumpFace::Look PumpAbility::look() const {
    PumpFace::Look look;
    look.gauge =
        usage_.snapshot() ? FellowCore::PumpGauge(*usage_.snapshot()) : FellowCore::PumpGauge(std::nullopt);
    look.digits = roll_.digits();
    look.oldDigits = roll_.oldDigits();
    look.rows = roll_.rows();
    const auto urgent = agents_.urgent();
    const auto phase = urgent ? std::optional(urgent->event) : std::nullopt;
    if (const auto lamp = PumpAgentLamp::pose(phase, now(), reducesMotion())) {
        look.lamp = std::string(*lamp);
    }
    return look;
}

void PumpAbility::draw(QPainter& painter, const QRectF& art, double) {
    face_.draw(painter, art, look());
}

void PumpAbility::togglePanel() {
    if (isOpen()) {
        panel_->dismiss();
        return;
    }
    if (comeOut(owner_, site_)) {
        openPanel();
    }
}

void PumpAbility::openPanel() {
    makePanel();
    connections_.look();
    cue_.dismiss();
    if (!panel_->present(PanelOpening::replacesActions)) {
        site_.tell(words("There is no room for the gauge here. Move Pump a little."));
        return;
    }
    panelView_->takeKeyboard();
    usage_.refresh();
    owner_.abilityChanged();
}

void PumpAbility::makePanel() {
    if (panel_) {
        return;
    }
    auto view = std::make_unique<PumpPanel>(usage_, agents_, connections_, site_.services.system.clock());
    panelView_ = view.get();
    panelView_->onSession = [this](const PumpAgentEvent& session) {
        panel_->dismiss();
        goTo(session);
    };
    panelView_->onSettings = [this] {
        panel_->dismiss();
        site_.commands.openLibrary(owner_.identifier());
    };
    panel_ = std::make_unique<CharacterPanel>(owner_, site_, std::move(view));
    panel_->onDismissed = [this] { owner_.abilityChanged(); };
}

bool PumpAbility::clicked() {
    const bool wasOpen = isOpen() || cue_.isPresented();
    cue_.dismiss();
    if (panel_) {
        panel_->dismiss();
    }
    return wasOpen;
}

void PumpAbility::moved() {
    cue_.anchor();
    if (panel_) {
        panel_->anchor();
    }
}

std::vector<FellowCore::Rect> PumpAbility::attachmentWindows() const {
    std::vector<FellowCore::Rect> windows = cue_.frames();
    if (panel_) {
        const auto own = panel_->frames();
        windows.insert(windows.end(), own.begin(), own.end());
    }
    return windows;
}

std::optional<QString> PumpAbility::statusOverride() const {
    const auto urgent = agents_.urgent();
    return urgent && urgent->event == PumpAgentPhase::needsYou ? PumpPresentation::sentence(*urgent)
                                                               : PumpPresentation::status(usage_.snapshot());
}

std::optional<QString> PumpAbility::accessibilityValue() const {
    const QString usage = PumpPresentation::status(usage_.snapshot());
    const auto urgent = agents_.urgent();
    return urgent ? words("%1. %2").arg(usage, PumpPresentation::sentence(*urgent)) : usage;
}

std::optional<QString> PumpAbility::badge() const {
    const auto digits = look().gauge.digits;
    return digits ? std::optional(QStringLiteral("%1%").arg(*digits)) : std::nullopt;
}

QuickAction PumpAbility::openAction() {
    QuickAction open;
    open.id = QStringLiteral("open");
    open.title = isOpen() ? words("Close gauge") : words("Open gauge");
    open.emphasis = Emphasis::primary;
    open.onPress = [this] { togglePanel(); };
    return open;
}

std::optional<QuickAction> PumpAbility::jumpAction() {
    const auto urgent = agents_.urgent();
    if (!urgent) {
        return std::nullopt;
    }
    QuickAction jump;
    jump.id = QStringLiteral("jump");
    jump.title = words("Go to %1").arg(PumpPresentation::shortTitle(*urgent));
    jump.onPress = [this] {
        if (const auto session = agents_.urgent()) {
            goTo(*session);
        }
    };
    return jump;
}

QuickAction PumpAbility::sessionsAction() {
    QuickAction sessions;
    sessions.id = QStringLiteral("sessions");
    sessions.title = words("Sessions");
    sessions.onPress = [this] { // a link has no place for a menu
        if (!isOpen()) {
            togglePanel();
        }
    };
    sessions.menu = [this] {
        return SessionMenuItem::menu(agents_.sessions(), now(),
                                     [this](const PumpAgentEvent& session) { goTo(session); });
    };
    return sessions;
}

std::vector<QuickAction> PumpAbility::actions() {
    std::vector<QuickAction> offered{openAction()};
    if (auto jump = jumpAction()) {
        offered.push_back(std::move(*jump));
    }
    offered.push_back(sessionsAction());
    return offered;
}

} // namespace DeskSprites
