#include "app/desktop/PixelFrame.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace DeskSprites {

namespace {

constexpr int bodySteps = 4;

/// How far each row of a corner is cut in, from the outermost row, in art pixels. Each profile is its own
/// mirror image about the diagonal, so that corners look the same from both sides.
constexpr std::array<std::array<int, 4>, 5> cornerProfiles = {{
    {},
    {1},
    {2, 1},
    {3, 1, 1},
    {4, 2, 1, 1},
}};

/// What is left when one art pixel is taken off every edge.
QRegion eroded(const QRegion& region) {
    constexpr int pixel = PixelFrame::pixel;
    return region & region.translated(pixel, 0) & region.translated(-pixel, 0) & region.translated(0, pixel) &
           region.translated(0, -pixel);
}

void fill(QPainter& painter, const QRegion& region, const QColor& colour) {
    for (const QRect& rect : region) {
        painter.fillRect(rect, colour);
    }
}

} // namespace

PixelFrame::PixelFrame(const QSize& frame, std::optional<Pointer> pointer)
    : frame_(frame), pointer_(pointer) {}

QSize PixelFrame::frameSize(const QSize& body) {
    return {body.width() + pointerLength + dropLength, body.height() + dropLength};
}

QRect PixelFrame::body() const {
    const int left = pointer_ && pointer_->side == Side::left ? pointerLength : 0;
    return {left, 0, frame_.width() - pointerLength - dropLength, frame_.height() - dropLength};
}

QMargins PixelFrame::margins() const {
    const QRect inside = body();
    return {inside.left(), inside.top(), frame_.width() - inside.right() - 1,
            frame_.height() - inside.bottom() - 1};
}

QRegion PixelFrame::pointerRegion() const {
    const QRect inside = body();
    constexpr int rows = 2 * (pointerLength / pixel) - 1;
    constexpr int corner = bodySteps * pixel;
    const int wanted =
        static_cast<int>(std::lround((frame_.height() - pointer_->y - rows * pixel / 2.0) / pixel)) * pixel;
    const int lowest = inside.height() - corner - rows * pixel;
    const int top = std::max(corner, std::min(wanted, lowest));
    QRegion region;
    for (int row = 0; row < rows; ++row) {
        const int length = (std::min(row, rows - 1 - row) + 1) * pixel;
        const int left = pointer_->side == Side::left ? inside.left() - length : inside.right() + 1;
        region += QRect(left, inside.top() + top + row * pixel, length, pixel);
    }
    return region;
}

QRegion PixelFrame::silhouette() const {
    QRegion region = steppedRegion(body(), bodySteps);
    if (pointer_) {
        region += pointerRegion();
    }
    return region;
}

void PixelFrame::paint(QPainter& painter, const DialoguePalette& palette) const {
    const QRegion outer = silhouette();
    const QRegion inner = eroded(outer);
    QColor drop = palette.contour();
    drop.setAlphaF(0.28F);
    fill(painter, outer.translated(dropLength, dropLength) - outer, drop);
    fill(painter, outer - inner, palette.contour());
    fill(painter, inner, palette.paper);
    // Light comes from the upper left. On a dark desktop the whole ring is lit, or the shape would be lost.
    const bool light = palette.theme() == DesktopTheme::light;
    const QRegion lit = light ? inner - inner.translated(pixel, pixel) : inner - eroded(inner);
    fill(painter, lit, palette.highlight());
    if (light) {
        fill(painter, inner - inner.translated(-pixel, -pixel) - lit, mixed(palette.paper, palette.ink, 0.1));
    }
}

QRegion steppedRegion(const QRect& rect, int steps) {
    constexpr int pixel = PixelFrame::pixel;
    const int most = std::min(rect.width(), rect.height()) / (2 * pixel);
    steps = std::clamp(steps, 0, std::min(most, static_cast<int>(cornerProfiles.size()) - 1));
    const auto& profile = cornerProfiles[static_cast<std::size_t>(steps)];
    QRegion region(rect.adjusted(0, steps * pixel, 0, -steps * pixel));
    for (int row = 0; row < steps; ++row) {
        const int cut = profile[static_cast<std::size_t>(row)] * pixel;
        const QRect band(rect.left() + cut, rect.top() + row * pixel, rect.width() - 2 * cut, pixel);
        region += band;
        region += band.translated(0, rect.height() - (2 * row + 1) * pixel);
    }
    return region;
}

void fillStepped(QPainter& painter, const QRect& rect, int steps, const QColor& colour) {
    fill(painter, steppedRegion(rect, steps), colour);
}

} // namespace DeskSprites
