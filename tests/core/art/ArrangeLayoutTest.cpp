#include "core/art/ArrangeLayout.h"

#include "core/art/DesktopSize.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace FellowCore {
namespace {

using ArrangeLayout::Edge;
using ArrangeLayout::Metrics;

// A character whose window is `wide` times as wide as its height, and as high as it.
Metrics character(double height, double wide = 1) {
    return {height, {height * wide, height}};
}

TEST(ArrangeLayout, LooksAtTheWindowForEachPointOfHeight) {
    EXPECT_EQ(Metrics(320, {160, 400}).canvasPerHeight, (Size{0.5, 1.25}));
    const double nan = std::nan("");
    for (const Metrics& odd : {Metrics(0, {160, 400}), Metrics(-5, {160, 400}), Metrics(320, {nan, 0}),
                               Metrics(nan, {320, 320})}) {
        EXPECT_EQ(odd.canvasPerHeight, (Size{1, 1}));
    }
    EXPECT_EQ(Metrics(nan, {320, 320}).height, 320);
}

TEST(ArrangeLayout, CompactHeightIsTheSmallestLimit) {
    const Rect wide{0, 0, 2000, 1200};
    const struct {
        const char* fault;
        std::vector<Metrics> characters;
        Rect visible;
        double expected;
    } cases[] = {
        {"nobody", {}, wide, 180},
        {"one small character keeps its height", {character(150)}, wide, 150},
        {"a tall one comes down to 180", {character(320)}, wide, 180},
        {"the smallest of all decides", {character(320), character(140), character(600)}, wide, 140},
        {"a narrow screen", {character(320), character(320)}, {0, 0, 300, 1200}, 100},
        {"a low screen", {character(320), character(320)}, {0, 0, 2000, 300}, 100},
        {"wide windows need more of it", {character(320, 3), character(320)}, {0, 0, 300, 1200}, 50},
        {"a screen smaller than the margins", {character(320)}, {0, 0, 40, 1200}, 0},
    };
    for (const auto& each : cases) {
        EXPECT_DOUBLE_EQ(ArrangeLayout::compactHeight(each.characters, each.visible), each.expected)
            << each.fault;
    }
}

TEST(ArrangeLayout, FittedHeightsScaleAllAlike) {
    using Heights = std::vector<double>;
    const struct {
        const char* fault;
        std::vector<Metrics> characters;
        Edge edge;
        Rect visible;
        Heights expected;
    } cases[] = {
        {"nobody", {}, Edge::right, {0, 0, 500, 500}, {}},
        {"room enough never enlarges",
         {character(140), character(200)},
         Edge::bottom,
         {0, 0, 5000, 5000},
         {140, 200}},
        // 2 * 32 padding and 3 * 12 margin leave 300 of 400 for 600 points of art.
        {"too long along the bottom",
         {character(400), character(200)},
         Edge::bottom,
         {0, 0, 400, 5000},
         {200, 100}},
        {"too long along the right",
         {character(400), character(200)},
         Edge::right,
         {0, 0, 5000, 400},
         {200, 100}},
        // 24 and 32 leave 200 of 256 across for the tallest.
        {"too high for the bottom",
         {character(400), character(200)},
         Edge::bottom,
         {0, 0, 5000, 256},
         {200, 100}},
        {"too wide for the right",
         {character(200, 2), character(200)},
         Edge::right,
         {0, 0, 256, 5000},
         {100, 100}},
        {"no room at all is nothing, not less", {character(400)}, Edge::bottom, {0, 0, 20, 20}, {0}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(ArrangeLayout::fittedHeights(each.characters, each.edge, each.visible), each.expected)
            << each.fault;
    }
}

TEST(ArrangeLayout, FramesKeepTheirOrderFromTheCorner) {
    const Rect visible{100, 50, 1000, 800};
    const std::vector<Size> sizes{{100, 200}, {150, 250}, {200, 300}};
    EXPECT_EQ(ArrangeLayout::frames(sizes, Edge::bottom, visible),
              (std::vector<Rect>{{614, 62, 100, 200}, {726, 62, 150, 250}, {888, 62, 200, 300}}));
    EXPECT_EQ(ArrangeLayout::frames(sizes, Edge::right, visible),
              (std::vector<Rect>{{988, 636, 100, 200}, {938, 374, 150, 250}, {888, 62, 200, 300}}));
    EXPECT_TRUE(ArrangeLayout::frames({}, Edge::right, visible).empty());
}

TEST(ArrangeLayout, WhatWasFittedStandsOnTheScreenWithoutOverlap) {
    std::mt19937 random(2);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int round = 0; round < 2000; ++round) {
        const Rect visible{between(-500, 500), 70, between(400, 3000), between(400, 2000)};
        const Edge edge = round % 2 == 0 ? Edge::bottom : Edge::right;
        std::vector<Metrics> characters;
        for (int count = 0; count <= round % 3; ++count) {
            characters.push_back(character(between(140, 600), between(0.3, 2)));
        }
        const auto heights = ArrangeLayout::fittedHeights(characters, edge, visible);
        std::vector<Size> sizes;
        for (std::size_t index = 0; index < heights.size(); ++index) {
            EXPECT_LE(heights[index], characters[index].height);
            const Size each = characters[index].canvasPerHeight;
            // The window's paddings stay the same size whatever the art's.
            sizes.push_back({heights[index] * each.width + 2 * DesktopSize::windowPadding,
                             heights[index] * each.height + 2 * DesktopSize::windowPadding});
        }
        const auto frames = ArrangeLayout::frames(sizes, edge, visible);
        for (std::size_t index = 0; index < frames.size(); ++index) {
            EXPECT_TRUE(visible.inset(11.999, 11.999).contains(frames[index]));
            EXPECT_EQ(frames[index].size(), sizes[index]);
            EXPECT_TRUE(index == 0 || !frames[index].inset(-11, -11).intersects(frames[index - 1]));
        }
    }
}

TEST(ArrangeLayout, AnAnimationWithoutLengthIsOver) {
    for (const double duration : {0.0, -1.0, std::nan("")}) {
        EXPECT_EQ(ArrangeLayout::progress(0.1, duration), 1);
    }
    EXPECT_DOUBLE_EQ(ArrangeLayout::progress(0.14, 0.28), 0.9375);
}

TEST(ArrangeLayout, EdgesReadBackFromPreferences) {
    EXPECT_EQ(ArrangeLayout::edgeFromRawValue(ArrangeLayout::rawValue(Edge::bottom)), Edge::bottom);
    EXPECT_EQ(ArrangeLayout::edgeFromRawValue("right"), Edge::right);
    EXPECT_EQ(ArrangeLayout::edgeFromRawValue("Bottom"), std::nullopt);
}

} // namespace
} // namespace FellowCore
