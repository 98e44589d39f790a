// Any bytes as an image of a pack: decoded or refused, and what is decoded is exactly as large as it says,
// with blocks that cover each opaque pixel once. Of the first byte, bit 0 says whether one size is wanted,
// and bit 1 whether the checksum of each chunk is put right first: otherwise hardly any change would get past
// the checksums.

#include "core/art/AlphaMask.h"
#include "platform/image/PngDecoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace FellowCore;

constexpr PixelSize wanted{8, 8};

/// The checksum of a chunk's name and data (PNG, annex D: the reflected polynomial 0xEDB88320).
std::uint32_t checksum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~sum;
}

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char byte : bytes) {
        value = value << 8U | static_cast<std::uint8_t>(byte);
    }
    return value;
}

void mendChecksums(std::string& png) {
    constexpr std::size_t signature = 8;
    constexpr std::size_t field = 4; // length, name and checksum
    for (std::size_t at = signature; at + 3 * field <= png.size();) {
        const std::size_t data = bigEndian({png.data() + at, field});
        if (data > png.size() - at - 3 * field) {
            return;
        }
        const std::uint32_t sum = checksum({png.data() + at + field, field + data});
        at += 2 * field + data;
        for (std::size_t byte = 0; byte < field; ++byte, ++at) {
            png[at] = static_cast<char>(sum >> (24 - 8 * byte));
        }
    }
}

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
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    if ((data[0] & 2U) != 0) {
        mendChecksums(bytes);
    }
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
