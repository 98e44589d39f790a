#include "core/host/CharacterLifecycle.h"

#include <utility>

namespace FellowCore {

namespace {

void run(const std::function<void()>& closure) {
    if (closure) {
        closure();
    }
}

} // namespace

CharacterLifecycle::CharacterLifecycle(std::function<void()> prepare, std::function<void()> show,
                                       std::function<void()> hide)
    : prepare_(std::move(prepare)), show_(std::move(show)), hide_(std::move(hide)) {}

void CharacterLifecycle::prepareForActivation() {
    run(prepare_);
}

void CharacterLifecycle::activate() {
    run(show_);
}

void CharacterLifecycle::deactivate() {
    run(hide_);
}

} // namespace FellowCore
