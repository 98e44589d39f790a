#pragma once

#include <QColor>
#include <QPoint>
#include <QSize>
#include <QStringView>

class QPainter;

namespace DeskSprites {

/// Hand-made digits for gauges and badges: 0-9, colon, percent, full stop, minus, plus and space. Digits all
/// have one width, so a running clock never moves. Any other character is drawn as a space.
class PixelDigits {
public:
    enum class Face {
        small, ///< 7 pixels high, strokes of one
        large, ///< 10 pixels high, strokes of two
    };

    /// `pixel` is the side of one glyph pixel in points.
    explicit PixelDigits(Face face, int pixel = 2);

    QSize size(QStringView text) const;
    void paint(QPainter& painter, const QPoint& topLeft, QStringView text, const QColor& colour) const;

private:
    Face face_;
    int pixel_;
};

} // namespace DeskSprites
