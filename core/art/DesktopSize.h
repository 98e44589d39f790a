#pragma once

/// The bounds of a character's height on the desktop: the height of its visible art, in points.
namespace FellowCore::DesktopSize {

constexpr double standardHeight = 320; ///< a character with no saved size, and any height that is not finite
constexpr double smallestHeight = 140;
constexpr double largestHeight = 600;
constexpr double smallestContinuousHeight = 1; ///< while a drag or an animation is under way
constexpr double windowPadding = 16;           ///< around the art on every side

/// A height a character may keep: a whole number from 140 to 600. Halves round up; not finite gives 320.
double normalized(double height);

/// The height clamped to 140...600 without rounding; not finite gives 320.
double clamped(double height);

/// How high the whole canvas is when its visible art is `visible` points high and fills the fraction
/// `artwork` of it: a whole number. A height that is not finite counts as 320, a fraction that is no positive
/// number as 1.
double canvasHeight(double visible, double artwork);

} // namespace FellowCore::DesktopSize
