#pragma once

#include "app/characters/snake/SnakeBoardPainter.h"
#include "app/characters/snake/SnakeCard.h"
#include "app/characters/snake/SnakePlace.h"
#include "core/art/CharacterManifest.h"
#include "core/base/Instant.h"
#include "core/snake/SnakeCommand.h"

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

namespace DeskSprites {

class SnakeCountPlate;
class SnakeSpeedPlate;
class SnakeWordsPlate;

/// Whether a compositor lets the desktop be seen through the game.
enum class SnakeGround { translucent, opaque };

/// The game over the whole screen: it draws, and turns keys and clicks into commands. It knows no rules and
/// has no clock of its own; after each step only what has changed is painted.
class SnakeWindow : public QWidget {
    Q_OBJECT

public:
    /// `game` outlives the window.
    SnakeWindow(SnakePlace place, const FellowCore::SnakeGame& game,
                const FellowCore::CharacterManifest::Accent& accent, SnakeGround ground);
    ~SnakeWindow() override;

    /// Covers the screen and takes the keyboard.
    void open();
    /// Gives an open window the keyboard again.
    void bringToFront();
    const SnakePlace& place() const { return place_; }

    /// How much the desktop is darkened, 0...1.
    void setDim(double dim);
    void setMotion(SnakeBoardPainter::Motion motion);
    /// The game made a step: paints what that changed.
    void showStep(const SnakeResult& result);
    /// The game's status is another, or the game itself: paints everything.
    void showAnew(const SnakeResult& result);
    void flashSpeed(const QString& title, int level);

    std::function<void(const FellowCore::SnakeCommand&)> onCommand;
    std::function<void()> onFocusLost;
    std::function<void()> onFocusGained;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makePlates();
    void layPlates();
    void layCard();
    void applyPalette();
    void showResult(const SnakeResult& result);
    void command(FellowCore::SnakeCommand::Kind kind);
    QColor backdrop() const;

    SnakePlace place_;
    const FellowCore::SnakeGame& game_;
    FellowCore::CharacterManifest::Accent accent_;
    SnakeGround ground_;
    SnakeBoardPainter board_;
    SnakeBoardPainter::Motion motion_ = SnakeBoardPainter::Motion::full;
    int beat_ = 0;
    SnakeMarks painted_;
    double dim_ = 0;
    bool isActive_ = false;
    QElapsedTimer sinceActive_;
    SnakeCountPlate* score_;
    SnakeCountPlate* best_;
    SnakeWordsPlate* hint_;
    SnakeSpeedPlate* speed_;
    SnakeCard* card_;
};

} // namespace DeskSprites
