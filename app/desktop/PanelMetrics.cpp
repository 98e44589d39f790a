#include "app/desktop/PanelMetrics.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

QFont scaledFont(QFont font, double factor) {
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pixelSize() * factor))));
    }
    return font;
}

} // namespace DeskSprites
