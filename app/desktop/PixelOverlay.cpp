#include "app/desktop/PixelOverlay.h"

#include "app/desktop/PixelArtwork.h"

#include <cmath>

namespace DeskSprites {

void PixelOverlay::draw(QPainter& painter, const QRectF& art, bool outdated,
                        const std::function<QImage()>& compose) {
    const double scale = painter.device()->devicePixelRatioF();
    const QSize device(static_cast<int>(std::lround(art.width() * scale)),
                       static_cast<int>(std::lround(art.height() * scale)));
    if (outdated || picture_.size() != device) {
        picture_ = PixelArtwork::scaled(compose(), device);
    }
    picture_.setDevicePixelRatio(scale);
    painter.drawImage(art.topLeft(), picture_);
}

} // namespace DeskSprites
