#include "core/host/CharacterHost.h"

#include <utility>

namespace FellowCore {

CharacterHost::CharacterHost(Runtimes runtimes, std::set<std::string> unlocked)
    : runtimes_(std::move(runtimes)), unlocked_(std::move(unlocked)) {}

std::set<std::string> CharacterHost::available() const {
    std::set<std::string> ids = unlocked_;
    std::erase_if(ids, [this](const std::string& id) { return !isAvailable(id); });
    return ids;
}

bool CharacterHost::isAvailable(std::string_view id) const {
    return unlocked_.contains(std::string(id)) && runtimes_.contains(id);
}

bool CharacterHost::focus(std::string_view id) {
    if (!onScreen_.contains(id)) {
        return false;
    }
    activeID_ = id;
    return true;
}

bool CharacterHost::add(std::string_view id) {
    if (!isAvailable(id) || !onScreen_.add(id)) {
        return false;
    }
    activeID_ = id;
    if (visible_) {
        show(id);
    }
    return true;
}

bool CharacterHost::remove(std::string_view id) {
    const std::string removed(id); // `id` may be the very text that leaves the set
    if (!onScreen_.remove(removed)) {
        return false;
    }
    if (visible_) {
        hide(removed);
    }
    if (activeID_ == removed) {
        activateLast();
    }
    if (onScreen_.isEmpty()) {
        visible_ = false;
    }
    return true;
}

bool CharacterHost::swap(std::string_view id, std::string_view replacement) {
    const std::string leaving(id);
    const std::string coming(replacement);
    if (!isAvailable(coming) || !onScreen_.swap(leaving, coming)) {
        return false;
    }
    if (visible_ && leaving != coming) {
        hide(leaving);
        show(coming);
    }
    activeID_ = coming;
    return true;
}

bool CharacterHost::select(std::string_view id) {
    const std::string chosen(id);
    if (!isAvailable(chosen)) {
        return false;
    }
    const bool stands = focus(chosen) || (activeID_ ? swap(*activeID_, chosen) : add(chosen));
    if (stands) {
        setVisible(true);
    }
    return stands;
}

void CharacterHost::setVisible(bool visible) {
    if (onScreen_.isEmpty() || visible == visible_) {
        return;
    }
    visible_ = visible;
    for (const std::string& id : std::vector(onScreen_.ids())) {
        visible ? show(id) : hide(id);
    }
}

void CharacterHost::restore(const OnScreenSet& set, const std::optional<std::string>& focused) {
    shutdown();
    onScreen_ = set;
    onScreen_.filterUnlocked(available());
    activateLast();
    if (focused) {
        focus(*focused);
    }
    setVisible(true);
}

void CharacterHost::shutdown() {
    setVisible(false);
}

void CharacterHost::updateUnlocked(std::set<std::string> unlocked) {
    unlocked_ = std::move(unlocked);
    for (const std::string& id : std::vector(onScreen_.ids())) {
        if (!isAvailable(id)) {
            remove(id);
        }
    }
}

void CharacterHost::activateLast() {
    activeID_ = onScreen_.isEmpty() ? std::nullopt : std::optional(onScreen_.ids().back());
}

void CharacterHost::show(std::string_view id) {
    CharacterRuntime& runtime = *runtimes_.find(id)->second;
    runtime.prepareForActivation();
    runtime.activate();
}

void CharacterHost::hide(std::string_view id) {
    runtimes_.find(id)->second->deactivate();
}

} // namespace FellowCore
