#pragma once

#include "core/art/PixelImage.h"

#include <QImage>
#include <QRectF>
#include <QSize>

namespace DeskSprites {

/// Pixel art as pictures for the screen.
struct PixelArtwork {
    /// The picture in Qt's own form, without sharing memory.
    static QImage image(const FellowCore::PixelImage& source);

    /// The art drawn into exactly `device` pixels without smoothing. At a size that is no whole multiple of
    /// the art's, the art is enlarged to the next whole multiple first and then shrunk by area, because
    /// dropping or doubling single lines would make its outline uneven. A size below one pixel gives a null
    /// image.
    static QImage scaled(const QImage& art, QSize device);

    /// The rectangle with its origin and its size on whole device pixels. `backingScale` is pixels in a
    /// point.
    static QRectF aligned(const QRectF& rect, double backingScale);
};

} // namespace DeskSprites
