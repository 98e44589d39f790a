#include "app/characters/mira/ProgressRing.h"

#include "app/desktop/PixelFrame.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace DeskSprites {

namespace {

constexpr int pixel = PixelFrame::pixel;
constexpr int side = 20; ///< pixels across
constexpr double outer = side / 2.0;
constexpr double inner = outer - 1.9;

/// From the top clockwise, in whole turns.
double turn(const QPoint& cell) {
    const double x = cell.x() + 0.5 - outer;
    const double y = cell.y() + 0.5 - outer;
    const double angle = std::atan2(x, -y) / (2 * std::numbers::pi);
    return angle < 0 ? angle + 1 : angle;
}

/// The ring's pixels in the order in which they fill.
const std::vector<QPoint>& cells() {
    static const std::vector<QPoint> ring = [] {
        std::vector<QPoint> found;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const double distance = std::hypot(x + 0.5 - outer, y + 0.5 - outer);
                if (distance <= outer && distance > inner) {
                    found.emplace_back(x, y);
                }
            }
        }
        std::ranges::sort(found, {}, turn);
        return found;
    }();
    return ring;
}

} // namespace

ProgressRing::ProgressRing(int steps, QWidget* parent) : QProgressBar(parent) {
    setRange(0, steps);
    setValue(0);
    setTextVisible(false);
    setFixedSize(side * pixel, side * pixel);
}

void ProgressRing::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void ProgressRing::setStep(int step) {
    if (step != value()) {
        setValue(step);
        update(); // the base class repaints only when its own bar would look different
    }
}

QSize ProgressRing::sizeHint() const {
    return {side * pixel, side * pixel};
}

void ProgressRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const std::vector<QPoint>& ring = cells();
    const auto lit = static_cast<std::size_t>(
        std::lround(static_cast<double>(ring.size()) * value() / std::max(1, maximum())));
    for (std::size_t index = 0; index < ring.size(); ++index) {
        const int left = isRightToLeft() ? side - 1 - ring[index].x() : ring[index].x();
        painter.fillRect(left * pixel, ring[index].y() * pixel, pixel, pixel,
                         index < lit ? palette_.accent : palette_.line());
    }
}

} // namespace DeskSprites
