#include "app/characters/manifest/ManifestSpriteView.h"

#include "app/desktop/PixelArtwork.h"

#include <utility>

namespace DeskSprites {

ManifestSpriteView::ManifestSpriteView(std::shared_ptr<const FellowCore::ManifestCharacter> character)
    : character_(std::move(character)) {}

void ManifestSpriteView::setPose(const std::string& pose) {
    const std::string shown = character_->images().contains(pose) ? pose : "idle";
    if (shown == pose_) {
        return;
    }
    pose_ = shown;
    updatePointerRegion();
    redraw();
}

void ManifestSpriteView::paint(QPainter& painter, QSizeF) {
    drawCanvas(painter, image());
    if (drawOverlay) {
        drawOverlay(painter, canvasRect(), layout().unit);
    }
}

std::vector<FellowCore::AlphaRun> ManifestSpriteView::opaqueRuns() const {
    return character_->alphaRuns(pose_);
}

const QImage& ManifestSpriteView::image() {
    const auto [entry, isNew] = images_.try_emplace(pose_);
    if (isNew) {
        entry->second = PixelArtwork::image(*character_->images().at(pose_));
    }
    return entry->second;
}

} // namespace DeskSprites
