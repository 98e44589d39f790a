#include "core/art/AlphaMask.h"

#include <algorithm>
#include <cstddef>

namespace FellowCore {

namespace {

std::span<const std::uint8_t> rowOf(const AlphaMask& mask, int y) {
    const auto width = static_cast<std::size_t>(mask.width);
    return mask.bytes.subspan(static_cast<std::size_t>(y) * width, width);
}

std::vector<AlphaRun> runsOfRow(const AlphaMask& mask, int y) {
    std::vector<AlphaRun> runs;
    const auto row = rowOf(mask, y);
    const auto isOpaque = [](std::uint8_t alpha) { return alpha > opaqueAlphaThreshold; };
    for (auto begin = std::ranges::find_if(row, isOpaque); begin != row.end();) {
        const auto end = std::find_if_not(begin, row.end(), isOpaque);
        runs.push_back(
            {static_cast<int>(begin - row.begin()), y, static_cast<int>(end - row.begin()), y + 1});
        begin = std::find_if(end, row.end(), isOpaque);
    }
    return runs;
}

bool sameColumns(const AlphaRun& one, const AlphaRun& other) {
    return one.x0 == other.x0 && one.x1 == other.x1;
}

} // namespace

bool AlphaMask::opaque(Point normalized) const {
    const bool inside = normalized.x >= 0 && normalized.x < 1 && normalized.y >= 0 && normalized.y < 1;
    if (!inside || bytes.empty()) {
        return false;
    }
    // A y close to 0 makes 1 - y exactly 1, one row too far.
    const int row = std::min(static_cast<int>(height * (1 - normalized.y)), height - 1);
    const int column = std::min(static_cast<int>(width * normalized.x), width - 1);
    return rowOf(*this, row)[static_cast<std::size_t>(column)] > opaqueAlphaThreshold;
}

std::optional<AlphaRun> AlphaMask::opaqueBounds() const {
    std::optional<AlphaRun> bounds;
    for (const AlphaRun& run : alphaRuns()) {
        if (!bounds) {
            bounds = run;
        }
        bounds->x0 = std::min(bounds->x0, run.x0);
        bounds->x1 = std::max(bounds->x1, run.x1);
        bounds->y1 = std::max(bounds->y1, run.y1);
    }
    return bounds;
}

std::vector<AlphaRun> AlphaMask::alphaRuns() const {
    std::vector<AlphaRun> blocks;
    std::size_t open = 0; // the blocks from here on reach down to the row above
    for (int y = 0; y < height; ++y) {
        const std::vector<AlphaRun> runs = runsOfRow(*this, y);
        if (std::equal(runs.begin(), runs.end(), blocks.begin() + static_cast<std::ptrdiff_t>(open),
                       blocks.end(), sameColumns)) {
            std::for_each(blocks.begin() + static_cast<std::ptrdiff_t>(open), blocks.end(),
                          [](AlphaRun& block) { ++block.y1; });
        } else {
            open = blocks.size();
            blocks.insert(blocks.end(), runs.begin(), runs.end());
        }
    }
    return blocks;
}

} // namespace FellowCore
