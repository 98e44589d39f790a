// Any bytes as an image of a pack: decoded or refused, and what is decoded is exactly as large as it says,
// with blocks that cover each opaque pixel once. The first byte says whether one size is wanted.

#include "core/art/AlphaMask.h"
#include "platform/image/PngDecoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

using namespace FellowCore;

constexpr PixelSize wanted{8, 8};

void checkMask(const PixelImage& image) {
    std::vector<std::uint8_t> alpha;
    for (std::size_t byte = 3; byte < image.rgba.size(); byte += 4) {
        alpha.push_back(image.rgba[byte]);
    }
    std::ptrdiff_t covered = 0;
    for (const AlphaRun& run : AlphaMask{alpha, image.width, image.height}.alphaRuns()) {
        covered += std::ptrdiff_t{run.x1 - run.x0} * (run.y1 - run.y0);
    }
    if (covered !=
        std::ranges::count_if(alpha, [](std::uint8_t value) { return value > opaqueAlphaThreshold; })) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto expected = data[0] % 2 == 0 ? std::nullopt : std::optional(wanted);
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    try {
        const PixelImage image = Platform::decodePng(bytes, expected);
        const bool fits =
            expected ? image.size() == wanted : std::max(image.width, image.height) <= maximumImageSide;
        const auto pixels = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
        if (!fits || image.rgba.size() != 4 * pixels) {
            std::abort();
        }
        checkMask(image);
    } catch (const ImageError&) {
        // A refusal is an answer.
    }
    return 0;
}
