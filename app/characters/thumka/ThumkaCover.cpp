#include "app/characters/thumka/ThumkaCover.h"

#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelIcon.h"

#include <QPainter>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int notePixel = 3 * pixel;
constexpr int cornerSteps = 2;
} // namespace

ThumkaCover::ThumkaCover(QWidget* parent) : QWidget(parent) {
    setFixedSize(side, side);
}

void ThumkaCover::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void ThumkaCover::setCover(const QImage& cover) {
    if (cover.cacheKey() != cover_.cacheKey()) {
        cover_ = cover;
        update();
    }
}

void ThumkaCover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect inside = rect().adjusted(pixel, pixel, -pixel, -pixel);
    fillStepped(painter, rect(), cornerSteps, mixed(palette_.paper, palette_.ink, 0.5));
    fillStepped(painter, inside, cornerSteps - 1, palette_.hover);
    if (hasCover()) {
        painter.setClipRegion(steppedRegion(inside, cornerSteps - 1));
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(inside, cover_);
        return;
    }
    const int margin = (side - pixelIconSide * notePixel) / 2;
    paintPixelIcon(painter, {margin, margin}, PixelIcon::note, palette_.accent, notePixel);
}

} // namespace DeskSprites
