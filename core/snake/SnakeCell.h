#pragma once

namespace FellowCore {

/// One cell of the board; the origin is the cell at the lower left and y grows upwards.
struct SnakeCell {
    int x = 0;
    int y = 0;

    friend bool operator==(const SnakeCell&, const SnakeCell&) = default;
    friend constexpr SnakeCell operator+(SnakeCell one, SnakeCell other) {
        return {one.x + other.x, one.y + other.y};
    }
};

} // namespace FellowCore
