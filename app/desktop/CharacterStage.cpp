#include "app/desktop/CharacterStage.h"

#include <algorithm>
#include <set>

namespace DeskSprites {

CharacterStage::CharacterStage(DesktopServices& services) : services_(services) {}

CharacterStage::~CharacterStage() = default;

DesktopCharacter& CharacterStage::add(std::unique_ptr<DesktopCharacter> character) {
    characters_.push_back(std::move(character));
    return *characters_.back();
}

void CharacterStage::open() {
    FellowCore::CharacterHost::Runtimes runtimes;
    std::set<std::string> unlocked;
    for (const auto& character : characters_) {
        const std::string& id = character->identifier();
        auto& wrapped = controlledRuntimes_[id];
        wrapped = std::make_unique<ControlledRuntime>(*character, services_);
        runtimes[id] = wrapped.get();
        unlocked.insert(id);
    }
    host_ = std::make_unique<FellowCore::CharacterHost>(std::move(runtimes), std::move(unlocked));
}

DesktopCharacter* CharacterStage::find(std::string_view identifier) const {
    const auto found = std::ranges::find_if(
        characters_, [identifier](const auto& character) { return character->identifier() == identifier; });
    return found == characters_.end() ? nullptr : found->get();
}

ControlledRuntime* CharacterStage::controlled(std::string_view identifier) const {
    const auto found = controlledRuntimes_.find(identifier);
    return found == controlledRuntimes_.end() ? nullptr : found->second.get();
}

std::vector<DesktopCharacter*> CharacterStage::onScreen() const {
    std::vector<DesktopCharacter*> standing;
    for (const std::string& id : host_->onScreen().ids()) {
        standing.push_back(find(id));
    }
    return standing;
}

DesktopCharacter* CharacterStage::active() const {
    return host_->activeID() ? find(*host_->activeID()) : nullptr;
}

void CharacterStage::coverScreen(const std::optional<FellowCore::Rect>& screen) {
    for (DesktopCharacter* character : onScreen()) {
        character->setCovered(screen && character->geometry().frame.intersects(*screen));
    }
}

std::vector<FellowCore::Rect> CharacterStage::attachmentObstacles(const DesktopCharacter& of) const {
    std::vector<FellowCore::Rect> obstacles;
    for (const DesktopCharacter* other : onScreen()) {
        if (other != &of) {
            const std::vector<FellowCore::Rect> own = other->obstacles();
            obstacles.insert(obstacles.end(), own.begin(), own.end());
        }
    }
    return obstacles;
}

} // namespace DeskSprites
