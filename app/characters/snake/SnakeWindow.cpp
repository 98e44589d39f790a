#include "app/characters/snake/SnakeWindow.h"

#include "app/characters/snake/SnakeKeys.h"
#include "app/characters/snake/SnakePlates.h"
#include "core/snake/SnakeWords.h"
#include "platform/BubbleWindow.h"
#include "platform/ScreenSpace.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace DeskSprites {

using FellowCore::SnakeCommand;
using FellowCore::SnakeStatus;

namespace {

constexpr QColor night(32, 20, 26); ///< warm and nearly black
constexpr double veil = 0.32;       ///< laid over a board on which nothing moves
constexpr int clearTiles = 2;       ///< between the card and the head
constexpr int clickGuard = 300; ///< ms: a click this soon after the keyboard came was the one that brought it

QString fromCore(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QRegion scaled(const QRegion& region, double scale) {
    QRegion pixels;
    for (const QRect& rect : region) {
        pixels += QRectF(rect.x() * scale, rect.y() * scale, rect.width() * scale, rect.height() * scale)
                      .toAlignedRect();
    }
    return pixels;
}

} // namespace

SnakeWindow::SnakeWindow(SnakePlace place, const FellowCore::SnakeGame& game,
                         const FellowCore::CharacterManifest::Accent& accent, SnakeGround ground)
    : place_(std::move(place)), game_(game), accent_(accent), ground_(ground), board_(place_),
      painted_(game, 0) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(tr("Snake game"));
    setAccessibleDescription(fromCore(FellowCore::snakeAccessibilityHelp));
    setFocusPolicy(Qt::StrongFocus);
    if (ground_ == SnakeGround::translucent) {
        setAttribute(Qt::WA_TranslucentBackground);
    } else {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    makePlates();
    applyPalette();
}

SnakeWindow::~SnakeWindow() = default;

void SnakeWindow::makePlates() {
    score_ = new SnakeCountPlate(tr("Score"), this);
    best_ = new SnakeCountPlate(tr("Best"), this);
    hint_ = new SnakeWordsPlate(this);
    speed_ = new SnakeSpeedPlate(this);
    card_ = new SnakeCard(this);
    card_->onResume = [this] { command(SnakeCommand::Kind::togglePause); };
    card_->onRestart = [this] { command(SnakeCommand::Kind::restart); };
    card_->onLeave = [this] { command(SnakeCommand::Kind::leave); };
}

void SnakeWindow::open() {
    const QRect frame = Platform::toQt(place_.screen().frame);
    setGeometry(frame);
    create();
    if (QScreen* screen = QGuiApplication::screenAt(frame.center())) {
        windowHandle()->setScreen(screen);
    }
    showFullScreen();
    bringToFront();
}

void SnakeWindow::bringToFront() {
    Platform::activateBubbleWindow(*this);
}

void SnakeWindow::setDim(double dim) {
    dim_ = dim;
    update();
}

void SnakeWindow::setMotion(SnakeBoardPainter::Motion motion) {
    motion_ = motion;
    board_.setMotion(motion);
    update();
}

void SnakeWindow::showStep(const SnakeResult& result) {
    ++beat_;
    const SnakeMarks now(game_, beat_);
    const QRegion pixels = board_.changed(painted_, now);
    for (const QRect& rect : pixels) {
        update(place_.inPoints(rect));
    }
    painted_ = now;
    showResult(result);
}

void SnakeWindow::showAnew(const SnakeResult& result) {
    painted_ = SnakeMarks(game_, beat_);
    showResult(result);
    update();
}

void SnakeWindow::showResult(const SnakeResult& result) {
    score_->setCount(result.score, result.isNewBest);
    best_->setCount(result.best, false);
    hint_->setWords(fromCore(FellowCore::snakeKeysHint(game_.status())));
    hint_->setVisible(!FellowCore::isFinished(game_.status())); // the card of the end has it then
    card_->present(game_.status(), result);
    setAccessibleName(QString::fromStdString(FellowCore::snakeAccessibilityText(result.best)));
    setCursor(game_.status() == SnakeStatus::running ? Qt::BlankCursor : Qt::ArrowCursor);
    layPlates();
}

void SnakeWindow::flashSpeed(const QString& title, int level) {
    speed_->flash(title, level, motion_ == SnakeBoardPainter::Motion::full);
    layPlates();
}

void SnakeWindow::layPlates() {
    const auto put = [](QWidget* plate, const QRect& strip, double share) {
        const QSize size = plate->sizeHint();
        const int left = strip.left() + static_cast<int>(share * (strip.width() - size.width()));
        plate->setGeometry({{left, strip.top() + (strip.height() - size.height()) / 2}, size});
    };
    const QRect header = place_.header();
    put(score_, header, 0);
    put(best_, header, 1);
    put(speed_, header, 0.5);
    put(hint_, place_.footer(), 0.5);
    layCard();
}

void SnakeWindow::layCard() {
    const QRect board = place_.inPoints(place_.boardPixels());
    const QRect head = place_.inPoints(place_.cellPixels(game_.body().front()));
    QRect frame({}, card_->sizeHint());
    frame.moveCenter(board.center());
    // Whoever goes on must see where she is.
    const int room = clearTiles * head.height();
    if (frame.adjusted(-room, -room, room, room).intersects(head)) {
        const int away = board.height() / 2 - frame.height() / 2 - room;
        frame.translate(0, head.center().y() < board.center().y() ? away : -away);
    }
    card_->setGeometry(frame & board);
}

void SnakeWindow::applyPalette() {
    const DialoguePalette palette = DialoguePalette::forAccent(accent_, applicationTheme());
    score_->setDialoguePalette(palette);
    best_->setDialoguePalette(palette);
    hint_->setDialoguePalette(palette);
    speed_->setDialoguePalette(palette);
    card_->setDialoguePalette(palette);
}

QColor SnakeWindow::backdrop() const {
    QColor colour = night;
    if (ground_ == SnakeGround::translucent) {
        colour.setAlphaF(static_cast<float>(dim_));
    }
    return colour;
}

void SnakeWindow::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), backdrop());
    painter.save();
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale);
    board_.paint(painter, scaled(event->region(), scale), game_, beat_);
    painter.restore();
    if (game_.status() != SnakeStatus::running) {
        QColor colour = night;
        colour.setAlphaF(static_cast<float>(veil));
        painter.fillRect(event->rect() & place_.inPoints(place_.boardPixels()), colour);
    }
}

void SnakeWindow::command(SnakeCommand::Kind kind) {
    if (onCommand) {
        onCommand({kind, std::nullopt});
    }
}

void SnakeWindow::keyPressEvent(QKeyEvent* event) {
    const auto press = snakeKeyPress(*event);
    if (!press) {
        event->ignore();
        return;
    }
    if (const auto meant = FellowCore::snakeCommand(*press, game_.status()); meant && onCommand) {
        onCommand(*meant);
    }
}

void SnakeWindow::mousePressEvent(QMouseEvent* event) {
    const bool broughtKeyboard = !isActive_ || sinceActive_.elapsed() < clickGuard;
    if (event->button() == Qt::LeftButton && !broughtKeyboard && !FellowCore::isFinished(game_.status())) {
        command(SnakeCommand::Kind::togglePause);
    }
}

void SnakeWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) {
        applyPalette();
    }
    if (event->type() != QEvent::ActivationChange || isActiveWindow() == isActive_) {
        return;
    }
    isActive_ = isActiveWindow();
    sinceActive_.start();
    if (const auto& told = isActive_ ? onFocusGained : onFocusLost) {
        told();
    }
}

void SnakeWindow::closeEvent(QCloseEvent* event) {
    // Never refused: a window that stays would keep the whole program from ending.
    event->accept();
    command(SnakeCommand::Kind::leave);
}

} // namespace DeskSprites
