#include "app/desktop/CharacterPanel.h"

#include "platform/ScreenSpace.h"

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr double panelGap = 8; ///< points between the art and its panel
} // namespace

CharacterPanel::CharacterPanel(DesktopCharacter& character, CharacterSite& site,
                               std::unique_ptr<Bubble> bubble)
    : character_(character), site_(site), bubble_(std::move(bubble)) {
    bubble_->onPreferredSizeChanged = [this] { anchor(); };
    bubble_->isOwnPlace = [this](const QPoint& position) {
        return character_.isShown() &&
               character_.geometry().artwork.contains(Platform::fromQt(QPointF(position)));
    };
    bubble_->onDismissed = [this] {
        if (onDismissed) {
            onDismissed();
        }
    };
}

CharacterPanel::~CharacterPanel() = default;

bool CharacterPanel::present(PanelOpening opening) {
    if (!character_.isShown()) {
        return false;
    }
    if (opening == PanelOpening::replacesActions) {
        site_.dismissActions();
    }
    const Platform::System& system = site_.services.system;
    bubble_->setTranslucent(system.hasCompositor());
    bubble_->setAccent(character_.companion().manifest.accent);
    const bool reduced = site_.services.system.motion().isReduced();
    return bubble_->present(placement(), reduced ? BubbleMotion::reduced : BubbleMotion::full);
}

void CharacterPanel::anchor() {
    if (!isPresented()) {
        return;
    }
    const FellowCore::BubblePlacement place = placement();
    if (place.canPresent) {
        bubble_->place(place);
    } else {
        dismiss();
    }
}

std::vector<FellowCore::Rect> CharacterPanel::frames() const {
    return isPresented() ? std::vector{bubble_->placedFrame()} : std::vector<FellowCore::Rect>{};
}

FellowCore::BubblePlacement CharacterPanel::placement() const {
    const CharacterGeometry stands = character_.geometry();
    const auto screen = character_.screen();
    const FellowCore::Size size = bubble_->preferredSize();
    std::vector<FellowCore::Rect> avoiding = site_.obstacles(character_);
    std::ranges::copy_if(character_.attachments(), std::back_inserter(avoiding),
                         [this](const auto& own) { return !isPresented() || own != bubble_->placedFrame(); });
    return FellowCore::BubblePlacement::resolve(stands.artwork, stands.faceY,
                                                screen ? screen->visibleFrame : stands.artwork, size,
                                                size.height / 2, size.width, panelGap, avoiding);
}

} // namespace DeskSprites
