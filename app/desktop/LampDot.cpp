#include "app/desktop/LampDot.h"

#include "app/desktop/PixelFrame.h"

#include <QPainter>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int side = 6 * pixel;
} // namespace

LampDot::LampDot(QWidget* parent) : QWidget(parent) {
    setFixedSize(side, side);
}

void LampDot::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void LampDot::setColour(const QColor& colour) {
    if (colour != colour_) {
        colour_ = colour;
        update();
    }
}

QSize LampDot::sizeHint() const {
    return {side, side};
}

void LampDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect inside = rect().adjusted(pixel, pixel, -pixel, -pixel);
    fillStepped(painter, rect(), 1, mixed(colour_, palette_.contour(), 0.6));
    fillStepped(painter, inside, 1, colour_);
    painter.fillRect(inside.left() + pixel, inside.top() + pixel, pixel, pixel,
                     mixed(colour_, Qt::white, 0.7));
}

} // namespace DeskSprites
