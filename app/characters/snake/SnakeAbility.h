#pragma once

#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/snake/SnakeWindow.h"
#include "app/desktop/CharacterSite.h"
#include "core/snake/SnakeGame.h"
#include "core/snake/SnakePace.h"
#include "core/snake/SnakeStore.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

namespace DeskSprites {

/// Tells everyone in the program of `SnakeStore::preferencesChanged`.
class SnakePreferencesNotice : public QObject {
    Q_OBJECT

public:
    FellowCore::SnakeStore::Post post();

Q_SIGNALS:
    void changed();
};

/// Snake's game: its window, its one timer and its score. The rules are the core's.
class SnakeAbility final : public ManifestCharacterAbility {
public:
    enum class Restore { application, nothing };

    /// Both outlive the ability. `chooseFood` is the game's only source of chance.
    SnakeAbility(ManifestCharacterController& character, CharacterSite& site,
                 FellowCore::ChooseSnakeFood chooseFood);
    ~SnakeAbility() override;

    /// Opens a game on the character's screen, or brings the open one to the front. Refused with a sentence
    /// when the screen is too small.
    void play();
    /// Keeps the score and closes the game; nothing happens without one.
    void quit(Restore restore);
    void togglePause();
    /// A new game on the same board.
    void restart();
    /// Changes the stored speed by so many levels, and shows it even where it stays.
    void nudgeSpeed(int by);
    /// Pauses a running game, and nothing else.
    void pauseForFocusLoss();
    /// Makes one step now and schedules the next.
    void step();
    void schedule(FellowCore::Seconds after);
    /// Notes the application that gets the keyboard back.
    void rememberFrontmost();

    bool isOpen() const { return window_ != nullptr; }
    /// The game that is open.
    const FellowCore::SnakeGame& game() const { return *game_; }
    FellowCore::SnakeStore& store() { return store_; }
    SnakeWindow* window() const { return window_.get(); }
    SnakePreferencesNotice& preferences() { return notice_; }

    std::vector<FellowCore::Rect> attachmentWindows() const override;
    std::optional<QString> accessibilityValue() const override;
    std::optional<std::string> artworkPose() const override;
    std::optional<QString> statusOverride() const override;
    std::vector<QuickAction> actions() override;
    void deactivate() override { quit(Restore::application); }
    void pause() override { quit(Restore::nothing); }
    void screenLocked() override { quit(Restore::nothing); }
    void motionChanged() override;
    void moved() override;

private:
    void openWindow(SnakePlace place);
    void wireWindow();
    void carryOut(const FellowCore::SnakeCommand& command);
    void due();
    void begin();
    void resume();
    void focusGained();
    bool hasKeyboard() const;
    void frontmostChanged();
    void restoreFrontmost();
    void preferencesChanged();
    void keepScore(FellowCore::SnakeStep step);
    void showAnew();
    void cover();
    void uncover();
    SnakeResult result() const;
    FellowCore::Seconds interval() const;
    FellowCore::MonotonicInstant now() const;
    bool isRunning() const;

    ManifestCharacterController& character_;
    CharacterSite& site_;
    FellowCore::ChooseSnakeFood chooseFood_;
    SnakePreferencesNotice notice_;
    FellowCore::SnakeStore store_;
    std::optional<FellowCore::SnakeGame> game_;
    int bestAtStart_ = 0;
    FellowCore::SnakePace pace_;
    QTimer timer_;
    std::unique_ptr<SnakeWindow> window_;
    std::unique_ptr<SnakeWindow> closing_; ///< until it may be deleted: it may be the one that asked
    bool awaitsKeyboard_ = false;          ///< since the window was opened
    bool covers_ = false;
    std::optional<Platform::RunningApplication> frontmost_;
    std::optional<Platform::RunningApplication> lastExternal_; ///< seen while the game was open
};

} // namespace DeskSprites
