#include "core/art/DesktopLayout.h"
#include "core/art/DesktopNeighbours.h"
#include "core/art/DesktopSize.h"
#include "core/art/DesktopSizePreview.h"
#include "core/art/DesktopSizeTransition.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace FellowCore {
namespace {

constexpr Rect screen{100, 50, 1600, 900};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(DesktopLayout, KeepsTheFootOnItsSpotThroughEverySize) {
    const Point foot{900, 300};
    for (double height = 1; height <= 600; height += 7.3) {
        // Art of an odd shape, off the middle of its window.
        const Rect artwork{16 + height * 0.1, 16 + height * 0.05, height * 0.7, height};
        const Rect frame = DesktopLayout::frame({height + 60, height + 40}, artwork, foot, screen);
        const Point stands = DesktopLayout::anchor(frame, artwork);
        EXPECT_NEAR(stands.x, foot.x, 1e-9);
        EXPECT_NEAR(stands.y, foot.y, 1e-9);
    }
}

TEST(DesktopLayout, KeepsTheWindowOnTheScreen) {
    const Rect artwork{16, 16, 68, 168};
    const struct {
        const char* fault;
        Size size;
        Point anchor;
        Point expected;
    } cases[] = {
        {"as wanted", {100, 200}, {500, 300}, {450, 284}},
        {"over the left and bottom edge", {100, 200}, {0, 0}, {100, 50}},
        {"over the right and top edge", {100, 200}, {5000, 5000}, {1600, 750}},
        {"each axis by itself", {100, 200}, {5000, 300}, {1600, 284}},
        {"too wide stands at the left edge", {2000, 200}, {900, 300}, {100, 284}},
        {"too high stands at the bottom edge", {100, 1000}, {500, 300}, {450, 50}},
        {"an anchor that is no number", {100, 200}, {nan, -infinity}, {100, 50}},
        {"an anchor without end", {100, 200}, {infinity, 300}, {1600, 284}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(DesktopLayout::frame(each.size, artwork, each.anchor, screen),
                  (Rect{each.expected.x, each.expected.y, each.size.width, each.size.height}))
            << each.fault;
    }
}

TEST(DesktopNeighbours, StandsLeftOrElseRightOnTheSameFootLine) {
    const struct {
        const char* fault;
        Size size;
        Rect beside;
        Point expected;
    } cases[] = {
        {"left, 24 away", {200, 300}, {800, 60, 250, 350}, {576, 60}},
        {"exactly room on the left", {200, 300}, {324, 60, 250, 350}, {100, 60}},
        {"no room on the left", {200, 300}, {323, 60, 250, 350}, {597, 60}},
        {"at the screen's left edge", {200, 300}, {100, 60, 250, 350}, {374, 60}},
        {"room on neither side", {900, 300}, {900, 60, 500, 350}, {800, 60}},
        {"a foot below the screen", {200, 300}, {800, 0, 250, 350}, {576, 50}},
        {"too high for where the other stands", {200, 300}, {800, 800, 250, 350}, {576, 650}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(DesktopNeighbours::frame(each.size, each.beside, screen).origin(), each.expected)
            << each.fault;
    }
}

TEST(DesktopSize, ForcesHeightsIntoBounds) {
    const struct {
        const char* fault;
        double height;
        double expected;
    } cases[] = {
        {"halves round up", 200.5, 201},
        {"the rest rounds to the nearest", 200.49, 200},
        {"rounds before it clamps", 139.6, 140},
        {"too small", -5, 140},
        {"too large", 600.4, 600},
        {"no number", nan, 320},
        {"without end", infinity, 320},
        {"without end, below", -infinity, 320},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(DesktopSize::normalized(each.height), each.expected) << each.fault;
    }
    EXPECT_EQ(DesktopSize::clamped(200.4), 200.4) << "a slider's height is not rounded";

    EXPECT_EQ(DesktopSize::canvasHeight(320, 0.8), 400);
    EXPECT_EQ(DesktopSize::canvasHeight(321, 0.8), 401) << "401.25 is nearest to 401";
    EXPECT_EQ(DesktopSize::canvasHeight(nan, 0.5), 640);
    for (const double fraction : {0.0, -1.0, nan, infinity, 1e-310, 1e-307}) {
        EXPECT_EQ(DesktopSize::canvasHeight(320, fraction), 320) << fraction;
    }
}

TEST(DesktopSizePreview, KeepsTheLatestWishAndForgetsTheRest) {
    DesktopSizePreview preview;
    preview.request(200);
    EXPECT_EQ(preview.finish(), std::nullopt) << "a request without an edit is refused";

    preview.begin();
    preview.request(200);
    preview.request(5000);
    EXPECT_EQ(preview.takePending(), 600) << "the latest wins, clamped";
    EXPECT_EQ(preview.takePending(), std::nullopt);
    preview.request(nan);
    EXPECT_EQ(preview.takePending(), 320);

    using Height = std::optional<double>;
    const auto kept = [](Height displayed, Height pending, Height released) {
        return DesktopSizePreview{true, pending, displayed, released}.finish();
    };
    EXPECT_EQ(kept(210, 220, 230), 230);
    EXPECT_EQ(kept(210, 220, {}), 220);
    EXPECT_EQ(kept(210, {}, {}), 210);
    preview.settle(230);
    preview.finish();
    EXPECT_TRUE(!preview.isEditing && !preview.finish()) << "nothing stays for the next edit";
}

TEST(DesktopSizeTransition, EasesFromOneHeightToTheOther) {
    const DesktopSizeTransition grow{200, 360};
    EXPECT_EQ(grow.height(-1), 200);
    EXPECT_DOUBLE_EQ(grow.height(0.08), 350) << "half the time is fifteen sixteenths of the way";
    EXPECT_EQ(grow.height(0.16), 360);
    EXPECT_EQ(grow.height(99), 360);
    EXPECT_EQ(grow.height(nan), 360) << "a broken clock must not hang the animation";
    EXPECT_EQ((DesktopSizeTransition{360, 200}.height(0.08)), 210);
}

} // namespace
} // namespace FellowCore
