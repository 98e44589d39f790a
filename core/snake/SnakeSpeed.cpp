#include "core/snake/SnakeSpeed.h"

#include <algorithm>
#include <array>

namespace FellowCore {

namespace {

struct Row {
    std::string_view title;
    Seconds baseInterval;
};

constexpr std::array<Row, SnakeSpeed::fastest> rows{{{"Slow", 0.26},
                                                     {"Slow", 0.23},
                                                     {"Normal", 0.205},
                                                     {"Normal", 0.18},
                                                     {"Fast", 0.15},
                                                     {"Fast", 0.125},
                                                     {"Very fast", 0.1},
                                                     {"Very fast", 0.08},
                                                     {"Super fast", 0.06}}};

const Row& rowOf(int level) {
    const bool known = level >= SnakeSpeed::slowest && level <= SnakeSpeed::fastest;
    return known ? rows.at(static_cast<std::size_t>(level - SnakeSpeed::slowest)) : rows.back();
}

} // namespace

SnakeSpeed::SnakeSpeed(std::int64_t chosen)
    : level(static_cast<int>(std::clamp<std::int64_t>(chosen, slowest, fastest))) {}

std::string_view SnakeSpeed::title() const {
    return rowOf(level).title;
}

Seconds SnakeSpeed::baseInterval() const {
    return rowOf(level).baseInterval;
}

SnakeSpeed SnakeSpeed::nudged(int by) const {
    return SnakeSpeed(std::int64_t{level} + by);
}

} // namespace FellowCore
