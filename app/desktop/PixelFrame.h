#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QMargins>
#include <QRegion>
#include <QSize>

#include <optional>

class QPainter;

namespace DeskSprites {

/// The body of a bubble in the house's pixels: stepped corners, a one-pixel contour, a lit inner edge, a hard
/// drop edge below and to the right, and a stepped pointer towards the face. Sizes are points; one art pixel
/// is `pixel` points, so every edge falls on whole device pixels at scale 1 and 2.
class PixelFrame {
public:
    static constexpr int pixel = 2;
    static constexpr int pointerLength = 5 * pixel;
    static constexpr int dropLength = pixel;

    enum class Side { left, right };
    struct Pointer {
        Side side = Side::left;
        double y = 0; ///< from the frame's bottom, points; moved to where the body can carry the pointer
    };

    explicit PixelFrame(const QSize& frame, std::optional<Pointer> pointer = std::nullopt);

    /// The frame that a body of `body` needs, with room for a pointer and the drop edge.
    static QSize frameSize(const QSize& body);
    /// Where the body stands inside the frame, in Qt's y-down coordinates.
    QRect body() const;
    QMargins margins() const;
    /// Everything painted, drop edge excepted: what takes clicks.
    QRegion silhouette() const;
    void paint(QPainter& painter, const DialoguePalette& palette) const;

private:
    QRegion pointerRegion() const;

    QSize frame_;
    std::optional<Pointer> pointer_;
};

/// A rectangle with corners cut in steps of `PixelFrame::pixel`: one step for controls, more for bubbles.
QRegion steppedRegion(const QRect& rect, int steps);
/// Fills `steppedRegion` without smoothing.
void fillStepped(QPainter& painter, const QRect& rect, int steps, const QColor& colour);

} // namespace DeskSprites
