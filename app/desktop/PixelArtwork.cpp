#include "app/desktop/PixelArtwork.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

QImage PixelArtwork::image(const FellowCore::PixelImage& source) {
    constexpr qsizetype bytesPerPixel = 4;
    const QImage view(source.rgba.data(), source.width, source.height, source.width * bytesPerPixel,
                      QImage::Format_RGBA8888);
    return view.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage PixelArtwork::scaled(const QImage& art, QSize device) {
    if (art.isNull() || device.width() < 1 || device.height() < 1) {
        return {};
    }
    const auto multiple = [](int wanted, int native) { return (wanted + native - 1) / native; };
    const int factor =
        std::max(multiple(device.width(), art.width()), multiple(device.height(), art.height()));
    const QImage enlarged =
        factor == 1 ? art : art.scaled(art.size() * factor, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    return enlarged.size() == device
               ? enlarged
               : enlarged.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QRectF PixelArtwork::aligned(const QRectF& rect, double backingScale) {
    const double scale = std::isfinite(backingScale) ? std::max(backingScale, 1.0) : 1.0;
    const auto snap = [scale](double value) { return std::round(value * scale) / scale; };
    return {snap(rect.x()), snap(rect.y()), std::max(snap(rect.width()), 1 / scale),
            std::max(snap(rect.height()), 1 / scale)};
}

} // namespace DeskSprites
