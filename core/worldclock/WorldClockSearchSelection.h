#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace FellowCore {

/// The highlighted search result.
struct WorldClockSearchSelection {
    std::optional<int> index;

    /// Moves by `delta` among `count` results and stays at either end. Without a selection the first result
    /// counts as selected, so that Down leads to the second. No results, no selection.
    void move(int delta, int count) {
        if (count <= 0) {
            index.reset();
            return;
        }
        const std::int64_t moved = std::int64_t{index.value_or(0)} + delta;
        index = static_cast<int>(std::clamp<std::int64_t>(moved, 0, std::int64_t{count} - 1));
    }
};

} // namespace FellowCore
