#pragma once

#include <QColor>
#include <QPainter>
#include <QPoint>

#include <algorithm>
#include <string_view>

namespace DeskSprites {

/// Paints a picture kept as text, one string a row, '#' for a set pixel of side `pixel` points. Runs are
/// joined, so that no seam shows at a fractional scale.
template <typename Rows>
void paintPixelMap(QPainter& painter, const QPoint& topLeft, const Rows& rows, const QColor& colour,
                   int pixel) {
    int y = topLeft.y();
    for (const std::string_view row : rows) {
        for (std::size_t start = row.find('#'); start != std::string_view::npos;
             start = row.find('#', start)) {
            const std::size_t end = std::min(row.find_first_not_of('#', start), row.size());
            painter.fillRect(topLeft.x() + static_cast<int>(start) * pixel, y,
                             static_cast<int>(end - start) * pixel, pixel, colour);
            start = end;
        }
        y += pixel;
    }
}

} // namespace DeskSprites
