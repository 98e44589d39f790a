#include "app/desktop/SizeSlider.h"

namespace DeskSprites {

using FellowCore::Sizing;

namespace {

constexpr int stepMilliseconds = 16;

} // namespace

SizeSlider::SizeSlider(DesktopPlacement& placement, DesktopServices& services)
    : placement_(placement), services_(services) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(stepMilliseconds);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { step(); });
}

void SizeSlider::begin(DesktopCharacter& character) {
    if (character_ != &character) {
        finishSizePreview();
    }
    character_ = &character;
    preview_.begin();
    preview_.display(character.visibleHeight());
}

void SizeSlider::request(double height) {
    if (!preview_.isEditing) {
        return;
    }
    preview_.request(height);
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void SizeSlider::step() {
    const FellowCore::MonotonicInstant now = services_.system.clock().monotonic();
    if (const auto wanted = preview_.takePending()) {
        target_ = *wanted;
        way_ = {preview_.displayedHeight.value_or(*wanted), *wanted};
        wayStart_ = now;
    }
    if (!target_) {
        timer_.stop();
        return;
    }
    const FellowCore::Seconds elapsed = now - wayStart_;
    const double height = services_.system.motion().isReduced() ? *target_ : way_.height(elapsed);
    preview_.display(height);
    character_->setVisibleHeight(height, Sizing::continuous);
    if (height == *target_) {
        timer_.stop();
    }
}

void SizeSlider::finishSizePreview() {
    if (!preview_.isEditing || !character_) {
        return;
    }
    timer_.stop();
    preview_.end();
    if (const auto wanted = preview_.pendingHeight ? preview_.pendingHeight : target_) {
        preview_.settle(*wanted);
    }
    target_.reset();
    DesktopCharacter& character = *character_;
    character_ = nullptr;
    if (const auto height = preview_.finish()) {
        placement_.setDesktopHeight(character, character.crispVisibleHeight(*height));
    }
    if (onFinished) {
        onFinished();
    }
}

} // namespace DeskSprites
