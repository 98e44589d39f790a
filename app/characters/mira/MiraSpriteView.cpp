#include "app/characters/mira/MiraSpriteView.h"

#include <utility>

namespace DeskSprites {

MiraSpriteView::MiraSpriteView(LoadPoses load, std::vector<FellowCore::AlphaRun> stillRuns)
    : load_(std::move(load)), stillRuns_(std::move(stillRuns)) {}

const MiraPoses& MiraSpriteView::poses() const {
    if (!poses_) {
        poses_ = load_();
    }
    return *poses_;
}

void MiraSpriteView::prepare() {
    poses();
    updatePointerRegion();
}

std::vector<FellowCore::AlphaRun> MiraSpriteView::opaqueRuns() const {
    return poses_ ? poses_->opaqueRuns : stillRuns_;
}

void MiraSpriteView::showBreath(const MiraFrame& frame, MiraMotion motion) {
    const bool isSamePicture = breath_ && breath_->pose == frame.pose && motion_ == motion;
    const bool isSameGlow = breath_ && breath_->glow == frame.glow;
    breath_ = frame;
    motion_ = motion;
    if (!isSamePicture) {
        redraw();
    } else if (!isSameGlow && surface()) {
        surface()->update(glowRect().toAlignedRect());
    }
}

void MiraSpriteView::showAwake() {
    if (breath_) {
        breath_.reset();
        redraw();
    }
}

const QImage& MiraSpriteView::body() const {
    return breath_ ? poses().breath.at(static_cast<std::size_t>(breath_->pose)) : poses().eyesOpen;
}

QRectF MiraSpriteView::glowRect() const {
    const QRectF canvas = canvasRect();
    const double unit = layout().unit;
    const double ground = layout().size.height - layout().ground.y; // y down
    const double bottom = ground + glowDepth * unit;
    return {canvas.center().x() - GroundGlow::width * unit / 2, bottom - GroundGlow::height * unit,
            GroundGlow::width * unit, GroundGlow::height * unit};
}

void MiraSpriteView::paint(QPainter& painter, QSizeF) {
    if (breath_) {
        const auto size = motion_ == MiraMotion::full ? GroundGlow::Size::grows : GroundGlow::Size::still;
        glow_.paint(painter, glowRect(), breath_->glow, size);
    }
    drawCanvas(painter, body());
}

} // namespace DeskSprites
