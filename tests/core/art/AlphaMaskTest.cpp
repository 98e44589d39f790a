#include "core/art/AlphaMask.h"
#include "tests/core/art/TestPack.h"

#include <gmock/gmock.h>

#include <random>

namespace FellowCore {
namespace {

using Runs = std::vector<AlphaRun>;

/// Alpha bytes with the mask over them.
struct Drawing {
    std::vector<std::uint8_t> bytes;
    AlphaMask mask;

    explicit Drawing(const std::string& rows) {
        const PixelImage image = TestSupport::decodeMap("map\n" + rows, {});
        for (std::size_t pixel = 3; pixel < image.rgba.size(); pixel += 4) {
            bytes.push_back(image.rgba[pixel]);
        }
        mask = {bytes, image.width, image.height};
    }
};

TEST(AlphaMask, CoversTheOpaquePixelsWithFewBlocks) {
    const struct {
        const char* name;
        const char* rows;
        Runs runs;
    } cases[] = {
        {"nothing is opaque", "...\n--.\n", {}},
        {"a solid block is one", "###\n###\n", {{0, 0, 3, 2}}},
        {"the threshold itself is not opaque", "-+-\n", {{1, 0, 2, 1}}},
        {"runs at both edges of a row", "#..#\n", {{0, 0, 1, 1}, {3, 0, 4, 1}}},
        {"two columns grow together", "#.#\n#.#\n", {{0, 0, 1, 2}, {2, 0, 3, 2}}},
        {"a change starts new blocks", "##.\n.##\n.##\n", {{0, 0, 2, 1}, {1, 1, 3, 3}}},
        {"a gap of empty rows parts equal rows", "##\n..\n##\n", {{0, 0, 2, 1}, {0, 2, 2, 3}}},
        {"one run more than the row above", "#..\n#.#\n", {{0, 0, 1, 1}, {0, 1, 1, 2}, {2, 1, 3, 2}}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(Drawing(row.rows).mask.alphaRuns(), row.runs) << row.name;
    }
    EXPECT_EQ(AlphaMask{}.alphaRuns(), Runs{});
}

TEST(AlphaMask, BlocksCoverEachOpaquePixelOnce) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::uint8_t> bytes(13 * 11);
        for (auto& byte : bytes) {
            byte = random() % 3 == 0 ? 0 : 255;
        }
        std::vector<std::uint8_t> painted(bytes.size());
        for (const AlphaRun& run : AlphaMask{bytes, 13, 11}.alphaRuns()) {
            for (int y = run.y0; y < run.y1; ++y) {
                for (int x = run.x0; x < run.x1; ++x) {
                    painted[static_cast<std::size_t>(y * 13 + x)] += 255; // twice would not be 255 any more
                }
            }
        }
        ASSERT_EQ(painted, bytes);
    }
}

TEST(AlphaMask, FindsTheBoundsOfTheArt) {
    EXPECT_EQ(Drawing("....\n..#.\n.#..\n-...\n").mask.opaqueBounds(), (AlphaRun{1, 1, 3, 3}));
    EXPECT_EQ(Drawing("....\n----\n").mask.opaqueBounds(), std::nullopt);
}

TEST(AlphaMask, AnswersForAPointWithYUpwards) {
    const Drawing drawing("#...\n....\n...+\n");
    const struct {
        const char* name;
        Point point;
        bool opaque;
    } cases[] = {
        {"the top left corner", {0, 0.99}, true},
        {"the bottom left corner", {0, 0}, false},
        {"the bottom right corner", {0.999, 0}, true},
        {"so close to the bottom that the row would be one too far", {0.999, 1e-18}, true},
        {"the right edge is outside", {1, 0}, false},
        {"the top edge is outside", {0, 1}, false},
        {"left of the art", {-0.001, 0.99}, false},
        {"nowhere", {std::nan(""), 0.5}, false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(drawing.mask.opaque(row.point), row.opaque) << row.name;
    }
}

} // namespace
} // namespace FellowCore
