#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

#include <functional>

namespace DeskSprites {

/// A picture in art pixels over a character's art, scaled once for the size at which it is drawn.
class PixelOverlay {
public:
    /// Draws the picture over `art`, the canvas in points with y down. `compose` gives it with one pixel for
    /// each of the art's; it is asked only when the picture is `outdated`, or drawn at another size than
    /// last.
    void draw(QPainter& painter, const QRectF& art, bool outdated, const std::function<QImage()>& compose);

private:
    QImage picture_; ///< in device pixels
};

} // namespace DeskSprites
