#include "core/base/Geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(GeometryText, ReadsBackExactlyWhatWasWritten) {
    const double awkward[] = {0.0, -0.0, 0.1, -3440.5, 1e300, 5e-324, 1.0 / 3.0, 123456789.123456789};
    for (const double value : awkward) {
        const Point point{value, -value};
        const Rect rect{-value, value, 140, value};
        EXPECT_EQ(pointFromText(pointText(point)), point) << pointText(point);
        EXPECT_EQ(rectFromText(rectText(rect)), rect) << rectText(rect);
    }
    EXPECT_EQ(rectText({-12.5, 300, 140, 0.1}), "{{-12.5, 300}, {140, 0.1}}");
}

TEST(GeometryText, IsReadStrictly) {
    const struct {
        const char* fault;
        std::string_view text;
        bool understood;
    } cases[] = {
        {"blanks are optional", "{{1,2},{3,4}}", true},
        {"any white space anywhere between", "\n{ {1 ,\t2} , { 3,4 } } ", true},
        {"a number that is none", "{{nan, 2}, {3, 4}}", false},
        {"infinity by name", "{{1, 2}, {inf, 4}}", false},
        {"infinity by size", "{{1, 2}, {3, 1e999}}", false},
        {"something after the end", "{{1, 2}, {3, 4}} x", false},
        {"a point where a rectangle belongs", "{1, 2}", false},
        {"cut off", "{{1, 2}, {3, 4}", false},
        {"a comma for the decimal point", "{{1,5, 2}, {3, 4}}", false},
        {"a blank inside a number", "{{1 5, 2}, {3, 4}}", false},
        {"a zero byte", std::string_view("{{1, 2}, {3, 4}}\0", 17), false},
        {"nothing", "", false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(rectFromText(row.text).has_value(), row.understood) << row.fault;
    }
    EXPECT_FALSE(pointFromText("{{1, 2}, {3, 4}}")) << "a rectangle where a point belongs";
    EXPECT_FALSE(pointFromText("{1, 2}}")) << "something after the end";
    EXPECT_FALSE(pointFromText(pointText({infinity, 0}))) << "not finite, written anyway";
}

TEST(Rect, EdgesBelongToTheLowerLeftOnly) {
    const Rect rect{10, 20, 30, 40};
    EXPECT_TRUE(rect.contains(Point{10, 20}));
    EXPECT_FALSE(rect.contains(Point{40, 20})) << "the right edge is the neighbour's";
    EXPECT_FALSE(rect.contains(Point{10, 60})) << "the upper edge is the neighbour's";
    EXPECT_TRUE(rect.contains(rect)) << "shared edges are inside";
    EXPECT_FALSE(rect.contains(rect.translated(0.1, 0)));
}

TEST(Rect, SharesOnlyAreasNotEdges) {
    const Rect rect{0, 0, 10, 10};
    EXPECT_EQ(rect.sharedArea({5, 5, 10, 10}), 25);
    EXPECT_FALSE(rect.intersects({10, 0, 10, 10})) << "side by side";
    EXPECT_EQ(rect.sharedArea({20, 20, 5, 5}), 0) << "two negative overlaps must not make a positive area";
    EXPECT_FALSE(rect.intersects({5, 5, 0, 0})) << "nothing inside";
}

TEST(Rect, UnionLeavesEmptyOnesOut) {
    const Rect rect{100, 100, 10, 10};
    EXPECT_EQ(rect.united({}), rect) << "the origin must not be drawn in";
    EXPECT_EQ(Rect{}.united(rect), rect);
    EXPECT_EQ(rect.united({-5, 105, 10, 10}), (Rect{-5, 100, 115, 15}));
}

TEST(Rounding, HalvesGoAwayFromZeroOnBothSides) {
    EXPECT_EQ(roundedHalfAway(0.5), 1);
    EXPECT_EQ(roundedHalfAway(-0.5), -1);
    EXPECT_EQ(roundedHalfAway(2.5), 3);
}

} // namespace
} // namespace FellowCore
