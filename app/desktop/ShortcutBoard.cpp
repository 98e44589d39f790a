#include "app/desktop/ShortcutBoard.h"

namespace DeskSprites {

ShortcutBoard::ShortcutBoard(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts)
    : preferences_(preferences), shortcuts_(shortcuts) {
    shortcuts_.onPressed = [this](const std::string& name) {
        for (const auto& keeper : keepers_) {
            if (keeper->name() == name) {
                keeper->press();
            }
        }
    };
}

ShortcutKeeper& ShortcutBoard::add(ShortcutPurpose purpose, std::function<void()> onPressed) {
    keepers_.push_back(
        std::make_unique<ShortcutKeeper>(preferences_, shortcuts_, std::move(purpose), std::move(onPressed)));
    return *keepers_.back();
}

std::vector<QString> ShortcutBoard::registerAll() {
    std::vector<QString> refusals;
    for (const auto& keeper : keepers_) {
        if (const auto refusal = keeper->registerHotKey()) {
            refusals.push_back(*refusal);
        }
    }
    return refusals;
}

void ShortcutBoard::releaseAll() {
    for (const auto& keeper : keepers_) {
        keeper->release();
    }
}

} // namespace DeskSprites
