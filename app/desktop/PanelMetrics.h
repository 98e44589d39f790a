#pragma once

#include <QFont>

namespace DeskSprites {

/// The rhythm of bubbles and panels, in points.
namespace PanelMetrics {
constexpr int unit = 8;
constexpr int halfUnit = 4;
constexpr int controlHeight = 32;
/// How wide the inside of a panel is, unless its words need more.
constexpr int contentWidth = 264;
} // namespace PanelMetrics

/// `font` made larger or smaller, whether it is measured in points or pixels.
QFont scaledFont(QFont font, double factor);

} // namespace DeskSprites
