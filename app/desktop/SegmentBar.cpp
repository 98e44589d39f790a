#include "app/desktop/SegmentBar.h"

#include "app/desktop/PixelFrame.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {
constexpr int steps = 1000; // as fine as a bar across a whole screen can show
constexpr int segment = 3 * PixelFrame::pixel;
constexpr int gap = PixelFrame::pixel;
constexpr int barHeight = 3 * PixelFrame::pixel;
} // namespace

SegmentBar::SegmentBar(QWidget* parent) : QProgressBar(parent) {
    setRange(0, steps);
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SegmentBar::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void SegmentBar::setFraction(double fraction) {
    const double inside = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
    const int now = static_cast<int>(std::lround(inside * steps));
    if (now != value()) {
        setValue(now);
        QWidget::update(); // the base class repaints only when a bar of its own would look different
    }
}

QSize SegmentBar::sizeHint() const {
    return {10 * (segment + gap), barHeight};
}

void SegmentBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int count = std::max(1, (width() + gap) / (segment + gap));
    // What has begun shows as begun, and only the whole shows as whole.
    const int lit = static_cast<int>(std::floor(static_cast<double>(value()) * count / steps));
    const int shown = value() > 0 ? std::max(1, lit) : 0;
    for (int index = 0; index < count; ++index) {
        const int start = index * (segment + gap);
        // The last one reaches the edge, whatever width is left for it.
        const int length = index + 1 == count ? width() - start : segment;
        painter.fillRect(isRightToLeft() ? width() - start - length : start, 0, length, barHeight,
                         index < shown ? palette_.accent : palette_.line());
    }
}

} // namespace DeskSprites
