#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// A point in screen coordinates: points, x to the right, y upwards.
struct Point {
    double x = 0;
    double y = 0;

    bool isFinite() const;
    friend bool operator==(const Point&, const Point&) = default;
};

/// A width and a height in points.
struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle in screen coordinates: (x, y) is its lower left corner.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double minX() const { return x; }
    double minY() const { return y; }
    double midX() const { return x + width / 2; }
    double midY() const { return y + height / 2; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    Point origin() const { return {x, y}; }
    Size size() const { return {width, height}; }
    bool isEmpty() const { return !(width > 0) || !(height > 0); }
    bool isFinite() const;

    /// Whether the point lies inside; the right and upper edges are outside.
    bool contains(Point point) const;
    /// Whether `other` lies wholly inside; shared edges count as inside.
    bool contains(const Rect& other) const;
    /// Whether the two share an area; touching edges do not.
    bool intersects(const Rect& other) const;
    /// The area that both cover, in square points; 0 when they do not meet.
    double sharedArea(const Rect& other) const;
    /// The smallest rectangle around both; an empty rectangle adds nothing.
    Rect united(const Rect& other) const;
    Rect inset(double dx, double dy) const { return {x + dx, y + dy, width - 2 * dx, height - 2 * dy}; }
    Rect translated(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
    Rect at(Point origin) const { return {origin.x, origin.y, width, height}; }

    friend bool operator==(const Rect&, const Rect&) = default;
};

/// The value rounded to the nearest whole number, halves away from zero.
double roundedHalfAway(double value);

/// Geometry as preferences keep it: "{{x, y}, {width, height}}" and "{x, y}". Numbers are written in the
/// shortest form that reads back the same. Reading accepts any white space and yields nothing for anything
/// else, including numbers that are not finite.
std::string rectText(const Rect& rect);
std::optional<Rect> rectFromText(std::string_view text);
std::string pointText(Point point);
std::optional<Point> pointFromText(std::string_view text);

} // namespace FellowCore
