#include "app/characters/thumka/ThumkaTitle.h"

#include "app/characters/thumka/ThumkaTitleBubble.h"

namespace DeskSprites {

ThumkaTitle::ThumkaTitle(DesktopCharacter& character, CharacterSite& site)
    : character_(character), site_(site) {}

ThumkaTitle::~ThumkaTitle() = default;

void ThumkaTitle::show(const QString& title) {
    if (!panel_) {
        auto bubble = std::make_unique<ThumkaTitleBubble>();
        bubble_ = bubble.get();
        panel_ = std::make_unique<CharacterPanel>(character_, site_, std::move(bubble));
    }
    bubble_->setTitle(title);
    if (!panel_->present(PanelOpening::besideActions)) {
        panel_->dismiss();
    }
}

void ThumkaTitle::dismiss() {
    if (panel_) {
        panel_->dismiss();
    }
}

bool ThumkaTitle::isPresented() const {
    return panel_ && panel_->isPresented();
}

QString ThumkaTitle::title() const {
    return isPresented() ? bubble_->windowTitle() : QString();
}

std::vector<FellowCore::Rect> ThumkaTitle::frames() const {
    return panel_ ? panel_->frames() : std::vector<FellowCore::Rect>{};
}

void ThumkaTitle::anchor() {
    if (panel_) {
        panel_->anchor();
    }
}

} // namespace DeskSprites
