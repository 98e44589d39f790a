#include "core/art/ArtPixelGrid.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace FellowCore {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ArtPixelGrid, SnapsHeightsToWholeDevicePixels) {
    const struct {
        const char* name;
        double canvasHeight, wish, fraction, scale;
        double height;
    } cases[] = {
        {"the nearest step", 100, 320, 1, 1, 300},
        {"half a step goes up", 100, 350, 1, 1, 400},
        {"two device pixels a point allow half steps", 100, 320, 1, 2, 300},
        {"and the next half step", 100, 330, 1, 2, 350},
        {"only the fraction counts", 200, 320, 0.5, 1, 300},
        {"above the limit is the limit", 100, 900, 1, 1, 600},
        {"below the limit is the limit, a step or not", 100, 10, 1, 1, 140},
        {"the lower limit is closer than the first step", 100, 160, 1, 1, 140},
        {"the first step is closer than the lower limit", 100, 180, 1, 1, 200},
        {"the upper limit is closer than the last step", 110, 590, 1, 1, 600},
        {"no step between the limits: the closer limit", 700, 320, 1, 1, 140},
        {"a tie between the limits goes to the lower", 700, 370, 1, 1, 140},
        {"no number counts as the standard height", 100, nan, 1, 1, 300},
        {"infinity is no height", 100, infinity, 1, 1, 300},
        {"a scale below one counts as one", 100, 320, 1, 0.5, 300},
        {"a scale that is no number counts as one", 100, 320, 1, nan, 300},
        {"a fraction of zero counts as one", 100, 320, 0, 1, 300},
        {"a fraction below zero counts as one", 100, 320, -1, 1, 300},
        {"a denormal fraction counts as one", 100, 320, 1e-310, 1, 300},
    };
    for (const auto& row : cases) {
        const ArtPixelGrid grid({100, row.canvasHeight});
        EXPECT_NEAR(grid.snappedVisibleHeight(row.wish, row.fraction, row.scale), row.height, 1e-9)
            << row.name;
    }
}

TEST(ArtPixelGrid, UnitIsCrispAtRestAndFollowsADrag) {
    const ArtPixelGrid grid({100, 200});
    const struct {
        const char* name;
        double wish, fraction, scale;
        Sizing sizing;
        double unit;
    } cases[] = {
        {"at rest a whole device pixel", 330, 0.5, 1, Sizing::snapped, 3},
        {"at rest a half point on a double screen", 340, 0.5, 2, Sizing::snapped, 3.5},
        {"in a drag exactly as asked", 330, 0.5, 1, Sizing::continuous, 3.3},
        {"a drag may go low", 20, 0.5, 1, Sizing::continuous, 0.2},
        {"but not below one point", -5, 0.5, 1, Sizing::continuous, 0.01},
        {"nor above the limit", 700, 0.5, 1, Sizing::continuous, 6},
        {"nor nowhere", nan, 0.5, 1, Sizing::continuous, 3.2},
    };
    for (const auto& row : cases) {
        EXPECT_NEAR(grid.unit(row.wish, row.fraction, row.scale, row.sizing), row.unit, 1e-9) << row.name;
    }
}

TEST(ArtPixelGrid, FitsAndCentresTheCanvas) {
    const ArtPixelGrid grid({10, 20});
    const struct {
        const char* name;
        Rect bounds;
        double scale;
        Rect rect;
    } cases[] = {
        {"width decides", {0, 0, 20, 100}, 1, {0, 30, 20, 40}},
        {"height decides", {5, 5, 100, 40}, 1, {45, 5, 20, 40}},
        {"half a pixel goes away from zero", {0, 0, 21, 40}, 1, {1, 0, 20, 40}},
        {"half a point stands on a double screen", {0, 0, 21, 40}, 2, {0.5, 0, 20, 40}},
        {"left of the main screen too", {-22.5, 0, 20, 40}, 1, {-23, 0, 20, 40}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(grid.rect(row.bounds, row.scale), row.rect) << row.name;
    }
}

TEST(ArtPixelGrid, SnapsPoints) {
    EXPECT_EQ(ArtPixelGrid::snap({1.3, -1.5}, 1), (Point{1, -2}));
    EXPECT_EQ(ArtPixelGrid::snap({1.3, -1.2}, 2), (Point{1.5, -1}));
    EXPECT_EQ(ArtPixelGrid::snap({nan, infinity}, 2), (Point{0, 0}));
    EXPECT_EQ(ArtPixelGrid::snap({1.3, 1.3}, nan), (Point{1, 1}));
}

TEST(ArtPixelGrid, CountsArtPixelsInAnEnlargedImage) {
    const struct {
        const char* name;
        Size source;
        double pitch;
        Size canvas;
    } cases[] = {
        {"four by four pixels each", {480, 772}, 4, {120, 193}},
        {"halves away from zero", {5, 7}, 2, {3, 4}},
        {"never nothing", {1, 1}, 10, {1, 1}},
        {"no pitch is one", {5, 7}, nan, {5, 7}},
        {"zero is one", {5, 7}, 0, {5, 7}},
        {"below zero is one", {5, 7}, -2, {5, 7}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(ArtPixelGrid(row.source, row.pitch).canvas, row.canvas) << row.name;
    }
}

} // namespace
} // namespace FellowCore
