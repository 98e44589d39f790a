#pragma once

#include "core/base/Instant.h"

#include <cstdint>
#include <string_view>

namespace FellowCore {

/// How fast the snake is, as the user chooses it. The constructor raises or lowers the level into the range;
/// one that was changed to something outside afterwards reads as the fastest.
struct SnakeSpeed {
    static constexpr int slowest = 1;
    static constexpr int fastest = 9;
    static constexpr int defaultLevel = 4;

    int level; ///< 1...9

    explicit SnakeSpeed(std::int64_t level = defaultLevel);

    /// "Slow", "Normal", "Fast", "Very fast" or "Super fast".
    std::string_view title() const;
    /// The time between two steps while the score is 0.
    Seconds baseInterval() const;
    /// So many levels faster (slower when negative), within the range.
    SnakeSpeed nudged(int by) const;

    friend bool operator==(const SnakeSpeed&, const SnakeSpeed&) = default;
};

} // namespace FellowCore
