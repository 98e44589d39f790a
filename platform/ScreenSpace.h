#pragma once

#include "core/base/Geometry.h"

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>

namespace Platform {

/// Between Qt's global coordinates (y down, origin at the upper left of the primary screen) and screen
/// coordinates (y up, origin at the lower left of the primary screen's frame). Both are in points. Valid once
/// the application object exists; with no screen at all the two origins coincide.
FellowCore::Rect fromQt(const QRectF& rect);
FellowCore::Point fromQt(const QPointF& point);

/// Back again. Lower left corner and size are each rounded to whole points, so that a rectangle keeps its
/// size while it moves; what is not finite reads as 0.
QRect toQt(const FellowCore::Rect& rect);
QPoint toQt(FellowCore::Point point);

} // namespace Platform
