#pragma once

#include "app/characters/snake/SnakeAbility.h"
#include "app/desktop/ShortcutBoard.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"
#include "tests/support/OtherProgram.h"

#include <QApplication>
#include <QKeyEvent>

namespace SnakeHarness {

using namespace AppHarness;
using FellowCore::SnakeCell;
using FellowCore::SnakeDirection;
using FellowCore::SnakeStatus;
using FellowCore::SnakeStore;
using Restore = SnakeAbility::Restore;

/// Snake on a real desktop, with food that lies where the test wants it.
class SnakeDesk : public Desk {
public:
    SnakeDesk() {
        site.playSound = [this](FellowCore::InterfaceSoundCue cue, const DesktopCharacter&, double) {
            sounds.emplace_back(FellowCore::name(cue));
        };
        site.tell = [this](const QString& sentence) { told.push_back(sentence.toStdString()); };
        site.dismissActions = [] {};
        site.coverScreen = [this](const std::optional<FellowCore::Rect>& covered) {
            coversScreen = covered.has_value();
            snake->setCovered(coversScreen);
        };
        auto made = std::make_unique<SnakeAbility>(
            *snake, site, [this](const FellowCore::SnakeFreeCells& free) { return nextFood(free); });
        ability = made.get();
        snake->setAbility(std::move(made));
    }
    ~SnakeDesk() {
        snake.reset(); // while everything it was given still stands
    }

    /// Opens a game and waits until it has the keyboard and the whole screen. The clock stands still, so the
    /// game's own timer goes on in whole intervals.
    bool play() {
        snake->activate();
        ability->play();
        return waitUntil([this] { return window()->isActiveWindow() && window()->width() == 1600; });
    }
    SnakeWindow* window() const { return ability->window(); }
    const FellowCore::SnakeGame& game() const { return ability->game(); }
    SnakeStore& store() { return ability->store(); }
    std::string status() const {
        constexpr std::array names = {"running", "paused", "over", "won"};
        return ability->isOpen() ? names.at(static_cast<std::size_t>(game().status())) : "closed";
    }

    void key(int code, Qt::KeyboardModifiers modifiers = {}, bool repeats = false, const char* text = "",
             quint32 scanCode = 0) {
        QKeyEvent event(QEvent::KeyPress, code, modifiers, scanCode, 0, 0, QString::fromUtf8(text), repeats);
        QApplication::sendEvent(window(), &event);
    }
    /// Runs into the wall on the right.
    void end() {
        while (status() == "running") {
            ability->step();
        }
    }
    /// Puts every food before the snake, so that each step is a bite.
    void feed(bool always) { feeding_ = always; }

    QuietCommands commands;
    ShortcutBoard shortcuts{preferences, system.shortcuts()};
    CharacterSite site{services, commands, shortcuts, {}, {}, {}, {}, {}, {}, {}};
    Log sounds;
    Log told;
    bool coversScreen = false;
    std::unique_ptr<ManifestCharacterController> snake =
        makePack({.id = "snake", .poses = {"idle", "playing"}});
    SnakeAbility* ability = nullptr;

private:
    SnakeCell nextFood(const FellowCore::SnakeFreeCells& free) const {
        const SnakeCell start{free.columns() / 2, free.rows() / 2};
        const SnakeCell head = ability->isOpen() ? game().body().front() : start;
        return feeding_ ? SnakeCell{head.x + 1, head.y} : SnakeCell{0, 0};
    }

    bool feeding_ = false;
};

} // namespace SnakeHarness
