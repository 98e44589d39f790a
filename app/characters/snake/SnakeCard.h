#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/snake/SnakeStatus.h"

#include <QWidget>

#include <functional>

namespace DeskSprites {

class PanelButton;
class PanelText;

/// What a game has come to.
struct SnakeResult {
    int score = 0;
    int best = 0;
    bool isNewBest = false;
};

/// The card in the middle of the board while nothing moves: the pause, or the end with its score. Its buttons
/// are for the pointer and for assistive technology; the keyboard stays with the game's own keys.
class SnakeCard : public QWidget {
    Q_OBJECT

public:
    explicit SnakeCard(QWidget* parent);
    void setDialoguePalette(const DialoguePalette& palette);
    /// Shows the card of a status, and hides it while the game is running.
    void present(FellowCore::SnakeStatus status, const SnakeResult& result);

    std::function<void()> onResume;
    std::function<void()> onRestart;
    std::function<void()> onLeave;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Score;
    void build();
    void press();
    void announce();

    FellowCore::SnakeStatus status_ = FellowCore::SnakeStatus::running;
    DialoguePalette palette_;
    PanelText* title_;
    Score* score_;
    PanelText* best_;
    PanelText* hint_;
    PanelButton* primary_;
    PanelButton* leave_;
};

} // namespace DeskSprites
