#pragma once

#include <QColor>
#include <QPoint>
#include <QSize>

class QPainter;

namespace DeskSprites {

/// Small hand-made pictures for buttons, drawn in one colour at whole pixels.
enum class PixelIcon {
    hide,
    swap,
    bringAnother,
    settings,
    reset,
    play,
    pause,
    skip,
    previous,
    smaller,
    larger,
    close,
    chevron,
    back,
    edit,
    days,
    copy,
    save,
    note,
    undo,
};

/// All icons are squares of this many pixels.
constexpr int pixelIconSide = 9;

/// Draws the icon; `pixel` is the side of one of its pixels in points. `mirrored` is for right-to-left
/// layouts and only touches icons that have a direction.
void paintPixelIcon(QPainter& painter, const QPoint& topLeft, PixelIcon icon, const QColor& colour,
                    int pixel = 2, bool mirrored = false);

} // namespace DeskSprites
