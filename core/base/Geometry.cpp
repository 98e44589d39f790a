#include "core/base/Geometry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace FellowCore {

namespace {

void appendNumber(std::string& text, double value) {
    std::array<char, 32> digits{}; // the shortest form of any double fits in 24
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(digits.data(), end);
}

std::string pairText(double first, double second) {
    std::string text = "{";
    appendNumber(text, first);
    text += ", ";
    appendNumber(text, second);
    return text + "}";
}

/// Takes tokens off the front of a text, with any ASCII white space before each.
class GeometryReader {
public:
    explicit GeometryReader(std::string_view text) : rest_(text) {}

    bool take(char wanted) {
        skipSpace();
        if (rest_.empty() || rest_.front() != wanted) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    bool takeNumber(double& value) {
        skipSpace();
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        if (error != std::errc{} || !std::isfinite(value)) {
            return false;
        }
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return true;
    }

    bool takePair(double& first, double& second) {
        return take('{') && takeNumber(first) && take(',') && takeNumber(second) && take('}');
    }

    bool atEnd() {
        skipSpace();
        return rest_.empty();
    }

private:
    void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\n\v\f\r"), rest_.size())); }

    std::string_view rest_;
};

} // namespace

bool Point::isFinite() const {
    return std::isfinite(x) && std::isfinite(y);
}

bool Rect::isFinite() const {
    return origin().isFinite() && std::isfinite(width) && std::isfinite(height);
}

bool Rect::contains(Point point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
}

bool Rect::contains(const Rect& other) const {
    return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY() &&
           other.maxY() <= maxY();
}

bool Rect::intersects(const Rect& other) const {
    return sharedArea(other) > 0;
}

double Rect::sharedArea(const Rect& other) const {
    const double across = std::min(maxX(), other.maxX()) - std::max(minX(), other.minX());
    const double up = std::min(maxY(), other.maxY()) - std::max(minY(), other.minY());
    return across > 0 && up > 0 ? across * up : 0;
}

Rect Rect::united(const Rect& other) const {
    if (isEmpty() || other.isEmpty()) {
        return isEmpty() ? other : *this;
    }
    const double left = std::min(minX(), other.minX());
    const double bottom = std::min(minY(), other.minY());
    return {left, bottom, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - bottom};
}

double roundedHalfAway(double value) {
    return std::round(value);
}

std::string rectText(const Rect& rect) {
    std::string text = "{";
    text.append(pairText(rect.x, rect.y)).append(", ").append(pairText(rect.width, rect.height));
    return text.append("}");
}

std::optional<Rect> rectFromText(std::string_view text) {
    GeometryReader reader(text);
    Rect rect;
    const bool understood = reader.take('{') && reader.takePair(rect.x, rect.y) && reader.take(',') &&
                            reader.takePair(rect.width, rect.height) && reader.take('}') && reader.atEnd();
    return understood ? std::optional(rect) : std::nullopt;
}

std::string pointText(Point point) {
    return pairText(point.x, point.y);
}

std::optional<Point> pointFromText(std::string_view text) {
    GeometryReader reader(text);
    Point point;
    const bool understood = reader.takePair(point.x, point.y) && reader.atEnd();
    return understood ? std::optional(point) : std::nullopt;
}

} // namespace FellowCore
