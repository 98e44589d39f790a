#include "core/snake/SnakeDirection.h"

namespace FellowCore {

SnakeCell offset(SnakeDirection direction) {
    switch (direction) {
    case SnakeDirection::up:
        return {0, 1};
    case SnakeDirection::down:
        return {0, -1};
    case SnakeDirection::left:
        return {-1, 0};
    case SnakeDirection::right:
        break;
    }
    return {1, 0};
}

bool isOpposite(SnakeDirection direction, SnakeDirection to) {
    return offset(direction) + offset(to) == SnakeCell{0, 0};
}

} // namespace FellowCore
