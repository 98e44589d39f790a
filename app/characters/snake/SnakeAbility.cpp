#include "app/characters/snake/SnakeAbility.h"

#include "core/snake/SnakeWords.h"
#include "platform/BubbleWindow.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::InterfaceSoundCue;
using FellowCore::SnakeCommand;
using FellowCore::SnakeGame;
using FellowCore::SnakeStatus;
using FellowCore::SnakeStep;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Snake", source);
}

QString stateWords(SnakeStatus status) {
    return status == SnakeStatus::running  ? words("Playing  ·  score %1")
           : status == SnakeStatus::paused ? words("Paused  ·  score %1")
                                           : words("Game over  ·  score %1");
}

QString fromCore(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

FellowCore::SnakeStore::Post SnakePreferencesNotice::post() {
    return [this](std::string_view) { Q_EMIT changed(); };
}

SnakeAbility::SnakeAbility(ManifestCharacterController& character, CharacterSite& site,
                           FellowCore::ChooseSnakeFood chooseFood)
    : character_(character), site_(site), chooseFood_(std::move(chooseFood)),
      store_(site.services.preferences, notice_.post()) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { due(); });
    QObject::connect(&notice_, &SnakePreferencesNotice::changed, &notice_, [this] { preferencesChanged(); });
}

SnakeAbility::~SnakeAbility() {
    if (isOpen()) {
        site_.services.system.frontmost().setOnChange({});
    }
}

FellowCore::MonotonicInstant SnakeAbility::now() const {
    return site_.services.system.clock().monotonic();
}

bool SnakeAbility::isRunning() const {
    return isOpen() && game_->status() == SnakeStatus::running;
}

FellowCore::Seconds SnakeAbility::interval() const {
    return SnakeGame::stepInterval(game_->score(), store_.speed(), store_.rampAsEating());
}

SnakeResult SnakeAbility::result() const {
    return {game_->score(), store_.bestScore(), game_->score() > bestAtStart_};
}

void SnakeAbility::play() {
    if (isOpen()) {
        window_->bringToFront();
        return;
    }
    const auto screen = character_.isShown() ? character_.screen() : std::nullopt;
    if (!screen) {
        return;
    }
    SnakePlace place(*screen);
    if (!place.fitsGame()) {
        site_.tell(words("This screen is too small for a game of Snake."));
        return;
    }
    rememberFrontmost();
    site_.dismissActions();
    game_.emplace(place.columns(), place.rows(), chooseFood_);
    openWindow(std::move(place));
    begin();
}

void SnakeAbility::openWindow(SnakePlace place) {
    const bool translucent = site_.services.system.hasCompositor();
    window_ = std::make_unique<SnakeWindow>(std::move(place), *game_, character_.companion().manifest.accent,
                                            translucent ? SnakeGround::translucent : SnakeGround::opaque);
    wireWindow();
    window_->setDim(store_.backdropDim());
    motionChanged();
    awaitsKeyboard_ = true;
    cover();
    window_->open();
    site_.services.system.frontmost().setOnChange([this] { frontmostChanged(); });
}

void SnakeAbility::wireWindow() {
    window_->onCommand = [this](const SnakeCommand& command) { carryOut(command); };
    window_->onFocusLost = [this] {
        pauseForFocusLoss();
        uncover();
    };
    window_->onFocusGained = [this] { focusGained(); };
}

void SnakeAbility::begin() {
    bestAtStart_ = store_.bestScore();
    schedule(pace_.begin(now(), interval()));
    showAnew();
}

void SnakeAbility::restart() {
    if (!isOpen()) {
        return;
    }
    game_.emplace(game_->columns(), game_->rows(), chooseFood_);
    begin();
}

void SnakeAbility::quit(Restore restore) {
    if (!isOpen()) {
        return;
    }
    timer_.stop();
    site_.services.system.frontmost().setOnChange({});
    store_.record(game_->score());
    // Whoever has gone on to another application by now keeps the keyboard there.
    const bool hadKeyboard = hasKeyboard();
    closing_ = std::move(window_);
    closing_->onFocusLost = {};
    closing_->hide();
    QTimer::singleShot(0, &timer_, [this] { closing_.reset(); });
    uncover();
    if (restore == Restore::application && hadKeyboard) {
        restoreFrontmost();
    }
    frontmost_.reset();
    lastExternal_.reset();
    character_.abilityChanged();
}

void SnakeAbility::carryOut(const SnakeCommand& command) {
    switch (command.kind) {
    case SnakeCommand::Kind::turn:
        game_->turn(*command.direction);
        break;
    case SnakeCommand::Kind::faster:
        nudgeSpeed(1);
        break;
    case SnakeCommand::Kind::slower:
        nudgeSpeed(-1);
        break;
    case SnakeCommand::Kind::togglePause:
        togglePause();
        break;
    case SnakeCommand::Kind::restart:
        restart();
        break;
    case SnakeCommand::Kind::leave:
        quit(Restore::application);
        break;
    }
}

void SnakeAbility::due() {
    if (isOpen() && window_->isActiveWindow()) {
        step();
    } else {
        pauseForFocusLoss(); // a snake that nobody can steer must not run on
    }
}

void SnakeAbility::step() {
    if (!isRunning()) {
        return;
    }
    const SnakeStep made = game_->step(chooseFood_);
    if (made == SnakeStep::ate || FellowCore::endsGame(made)) {
        keepScore(made);
    }
    if (isRunning()) {
        window_->showStep(result());
        schedule(pace_.stepped(now(), interval()));
    } else {
        showAnew();
    }
}

void SnakeAbility::keepScore(SnakeStep step) {
    store_.record(game_->score());
    if (store_.sounds()) {
        const InterfaceSoundCue ended =
            step == SnakeStep::filledBoard ? InterfaceSoundCue::complete : InterfaceSoundCue::end;
        site_.playSound(step == SnakeStep::ate ? InterfaceSoundCue::open : ended, character_, 1);
    }
}

void SnakeAbility::schedule(FellowCore::Seconds after) {
    timer_.start(static_cast<int>(std::lround(after * 1000)));
}

void SnakeAbility::togglePause() {
    awaitsKeyboard_ = false;
    if (!isOpen() || !game_->togglePause()) {
        return;
    }
    if (isRunning()) {
        schedule(pace_.begin(now(), interval()));
    } else {
        timer_.stop();
    }
    showAnew();
}

void SnakeAbility::pauseForFocusLoss() {
    if (isOpen() && game_->pause()) {
        timer_.stop();
        showAnew();
    }
}

void SnakeAbility::nudgeSpeed(int by) {
    const FellowCore::SnakeSpeed speed = store_.speed().nudged(by);
    store_.setSpeed(speed);
    if (isOpen()) {
        window_->flashSpeed(words(std::string(speed.title()).c_str()), speed.level);
    }
}

void SnakeAbility::showAnew() {
    window_->showAnew(result());
    character_.abilityChanged();
}

void SnakeAbility::focusGained() {
    cover();
    // The window manager may take its time; a game that had to wait for the keyboard goes on by itself.
    if (std::exchange(awaitsKeyboard_, false) && game_->resume()) {
        schedule(pace_.begin(now(), interval()));
        showAnew();
    }
}

void SnakeAbility::rememberFrontmost() {
    frontmost_ = site_.services.system.frontmost().current();
    lastExternal_.reset();
}

bool SnakeAbility::hasKeyboard() const {
    const auto current = site_.services.system.frontmost().current();
    if (!current) {
        return window_->isActiveWindow(); // without a window manager only the window knows
    }
    // Right after the game has got the keyboard, the application before it may still be named.
    return current->window == window_->winId() || (frontmost_ && current->window == frontmost_->window);
}

void SnakeAbility::frontmostChanged() {
    const auto current = site_.services.system.frontmost().current();
    if (current && !current->isOurs) {
        lastExternal_ = current;
        // The news may be older than the keyboard's way here; a window that loses it tells so itself.
        if (!window_->isActiveWindow()) {
            pauseForFocusLoss();
        }
    }
}

void SnakeAbility::restoreFrontmost() {
    // Of our own windows, only one that still stands can take the keyboard; a bubble has gone meanwhile.
    const QWidget* own = frontmost_ ? QWidget::find(static_cast<WId>(frontmost_->window)) : nullptr;
    const bool stands = frontmost_ && (!frontmost_->isOurs || (own && own->isVisible()));
    if (const auto& target = stands ? frontmost_ : lastExternal_) {
        site_.services.system.frontmost().activate(*target);
    }
}

void SnakeAbility::cover() {
    covers_ = true;
    site_.coverScreen(window_->place().screen().frame);
}

void SnakeAbility::uncover() {
    covers_ = false;
    site_.coverScreen(std::nullopt);
}

void SnakeAbility::preferencesChanged() {
    if (isOpen()) {
        bestAtStart_ = std::min(bestAtStart_, store_.bestScore());
        window_->setDim(store_.backdropDim());
        window_->showAnew(result());
    }
    character_.abilityChanged();
}

void SnakeAbility::motionChanged() {
    if (isOpen()) {
        const bool reduced = site_.services.system.motion().isReduced();
        window_->setMotion(reduced ? SnakeBoardPainter::Motion::reduced : SnakeBoardPainter::Motion::full);
    }
}

void SnakeAbility::moved() {
    if (!isOpen()) {
        return;
    }
    const std::vector<Platform::ScreenInfo> screens = site_.services.system.screens().all();
    const bool stands = std::ranges::any_of(screens, [&own = window_->place().screen()](const auto& info) {
        return info.name == own.name && info.frame == own.frame && info.backingScale == own.backingScale;
    });
    if (!stands) {
        const int score = game_->score();
        quit(Restore::application);
        site_.tell(words("The screen has changed, so the game is over. Your score: %1.").arg(score));
    }
}

std::vector<FellowCore::Rect> SnakeAbility::attachmentWindows() const {
    return covers_ ? std::vector{window_->place().screen().frame} : std::vector<FellowCore::Rect>{};
}

std::optional<QString> SnakeAbility::accessibilityValue() const {
    return QString::fromStdString(FellowCore::snakeAccessibilityText(store_.bestScore()));
}

std::optional<std::string> SnakeAbility::artworkPose() const {
    return isOpen() ? std::optional<std::string>("playing") : std::nullopt;
}

std::optional<QString> SnakeAbility::statusOverride() const {
    if (isOpen()) {
        return stateWords(game_->status()).arg(game_->score());
    }
    const int best = store_.bestScore();
    return best > 0 ? words("Best score %1").arg(best) : words("Ready to play");
}

std::vector<QuickAction> SnakeAbility::actions() {
    QuickAction play;
    play.id = QStringLiteral("play");
    play.title = isOpen() ? words("Back to the game") : words("Play");
    play.emphasis = Emphasis::primary;
    play.enabled = character_.isShown();
    play.icon = PixelIcon::play;
    play.help = fromCore(FellowCore::snakeHelp);
    play.onPress = [this] { this->play(); };
    std::vector<QuickAction> offered{std::move(play)};
    if (isOpen()) {
        QuickAction end;
        end.id = QStringLiteral("end");
        end.title = words("End the game");
        end.onPress = [this] { quit(Restore::nothing); };
        offered.push_back(std::move(end));
    }
    return offered;
}

} // namespace DeskSprites
