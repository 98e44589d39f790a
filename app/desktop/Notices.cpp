#include "app/desktop/Notices.h"

#include "core/art/BubblePlacement.h"

#include <QDebug>

namespace DeskSprites {

namespace {

constexpr FellowCore::Seconds noticeLifetime = 14;
constexpr double bubbleGap = 8;

} // namespace

Notices::Notices(CharacterStage& stage, DesktopServices& services) : stage_(stage), services_(services) {}

void Notices::tell(const QString& sentence) {
    qInfo("%s", qUtf8Printable(sentence));
    waiting_.push_back(sentence);
    showNext();
}

void Notices::start() {
    started_ = true;
    showNext();
}

void Notices::end() {
    started_ = false;
    hide();
}

void Notices::hide() {
    if (controlBubble_) {
        controlBubble_->dismiss();
    }
}

void Notices::anchor() {
    const DesktopCharacter* active = stage_.active();
    if (active && controlBubble_ && controlBubble_->isPresented()) {
        controlBubble_->place(placement(*active));
    }
}

void Notices::showNext() {
    const DesktopCharacter* active = stage_.active();
    const bool isBusy = controlBubble_ && controlBubble_->isPresented();
    if (!started_ || waiting_.empty() || isBusy || !active || !active->isShown()) {
        return;
    }
    if (!controlBubble_) {
        controlBubble_ = std::make_unique<ControlBubble>();
        // Not at once: the bubble is only just hiding, and a window that is shown while it hides or closes is
        // lost to the toolkit between the two.
        controlBubble_->onDismissed = [this] {
            QMetaObject::invokeMethod(
                &context_, [this] { showNext(); }, Qt::QueuedConnection);
        };
    }
    ControlNotice notice;
    notice.text = waiting_.front();
    notice.lifetime = noticeLifetime;
    controlBubble_->setTranslucent(services_.system.hasCompositor());
    controlBubble_->setAccent(active->companion().manifest.accent);
    controlBubble_->setNotice(notice);
    const FellowCore::BubblePlacement place = placement(*active);
    waiting_.pop_front();
    if (place.canPresent) {
        const bool reduced = services_.system.motion().isReduced();
        controlBubble_->present(place, reduced ? BubbleMotion::reduced : BubbleMotion::full);
    }
}

FellowCore::BubblePlacement Notices::placement(const DesktopCharacter& character) const {
    const CharacterGeometry stands = character.geometry();
    const auto screen = character.screen();
    const FellowCore::Size size = controlBubble_->preferredSize();
    std::vector<FellowCore::Rect> avoiding = stage_.attachmentObstacles(character);
    const std::vector<FellowCore::Rect> own = character.attachments();
    avoiding.insert(avoiding.end(), own.begin(), own.end());
    if (obstacles) {
        const std::vector<FellowCore::Rect> more = obstacles();
        avoiding.insert(avoiding.end(), more.begin(), more.end());
    }
    return FellowCore::BubblePlacement::resolve(stands.artwork, stands.faceY,
                                                screen ? screen->visibleFrame : stands.artwork, size,
                                                size.height / 2, std::nullopt, bubbleGap, avoiding);
}

} // namespace DeskSprites
