#pragma once

#include <QImage>
#include <QRectF>

#include <array>

class QPainter;

namespace DeskSprites {

/// The soft pool of light on the ground around Mira, in art pixels: wider and brighter the fuller the breath.
class GroundGlow {
public:
    static constexpr int width = 128; ///< art pixels, of the picture at its fullest
    static constexpr int height = 30;

    /// Draws one level into a rectangle of the picture's proportions. Under `still` the light keeps its size
    /// and only its brightness changes.
    enum class Size { grows, still };
    void paint(QPainter& painter, const QRectF& rect, int level, Size size);

private:
    const QImage& picture(int level);

    static constexpr int sizes = 9;
    std::array<QImage, sizes> pictures_; ///< made when first shown
};

} // namespace DeskSprites
