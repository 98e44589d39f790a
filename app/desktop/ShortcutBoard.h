#pragma once

#include "app/desktop/ShortcutKeeper.h"

#include <memory>
#include <vector>

namespace DeskSprites {

/// Every shortcut of the program that works whatever has the keyboard.
class ShortcutBoard {
public:
    ShortcutBoard(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts);

    /// Adds one, before `registerAll`. The keeper lives as long as the board.
    ShortcutKeeper& add(ShortcutPurpose purpose, std::function<void()> onPressed);
    /// Asks the desktop for all of them. The sentences the user should know.
    std::vector<QString> registerAll();
    void releaseAll();

private:
    FellowCore::Preferences& preferences_;
    Platform::GlobalShortcuts& shortcuts_;
    std::vector<std::unique_ptr<ShortcutKeeper>> keepers_;
};

} // namespace DeskSprites
