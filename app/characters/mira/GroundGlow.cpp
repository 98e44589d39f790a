#include "app/characters/mira/GroundGlow.h"

#include "app/characters/mira/MiraFrame.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {

constexpr QRgb light = qRgb(0xf4, 0xb9, 0x4a); // a marigold lamp's
constexpr double smallest = 0.72;              // share of the full size at the emptiest
constexpr int bands = 5;
constexpr double brightest = 0.8; // alpha in the middle
constexpr double dimmest = 0.3;   // share of the brightness at the first level

/// An ordered pattern of 4 by 4, 0...15, by which one band goes over into the next in whole pixels.
constexpr std::array<int, 16> pattern{0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};

/// How bright a place is, 0...1, by its distance from the middle, 0 there and 1 at the edge.
double brightness(double distance, int x, int y) {
    const double soft = std::clamp(1 - distance, 0.0, 1.0);
    const int cell = pattern.at(static_cast<std::size_t>(y % 4 * 4 + x % 4));
    const double shade = soft * bands + (cell + 0.5) / 16 - 0.5;
    return std::clamp(std::round(shade) / bands, 0.0, 1.0);
}

QImage draw(double share) {
    QImage image(GroundGlow::width, GroundGlow::height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const double halfWidth = GroundGlow::width / 2.0;
    const double halfHeight = GroundGlow::height / 2.0;
    for (int y = 0; y < GroundGlow::height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < GroundGlow::width; ++x) {
            const double across = (x + 0.5 - halfWidth) / (halfWidth * share);
            const double down = (y + 0.5 - halfHeight) / (halfHeight * share);
            const double alpha = brightest * brightness(std::hypot(across, down), x, y);
            line[x] = qPremultiply((light & RGB_MASK) | (QRgb(std::lround(alpha * 255)) << 24U));
        }
    }
    return image;
}

} // namespace

const QImage& GroundGlow::picture(int level) {
    QImage& made = pictures_.at(static_cast<std::size_t>(level));
    if (made.isNull()) {
        made = draw(smallest + (1 - smallest) * level / (sizes - 1));
    }
    return made;
}

void GroundGlow::paint(QPainter& painter, const QRectF& rect, int level, Size size) {
    const double share = static_cast<double>(level) / MiraFrame::glowLevels;
    const int which = size == Size::grows ? static_cast<int>(std::lround(share * (sizes - 1))) : sizes / 2;
    painter.setOpacity(dimmest + (1 - dimmest) * share);
    painter.drawImage(rect, picture(which));
    painter.setOpacity(1);
}

} // namespace DeskSprites
