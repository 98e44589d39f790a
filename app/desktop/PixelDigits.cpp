#include "app/desktop/PixelDigits.h"

#include "app/desktop/PixelMap.h"

#include <algorithm>
#include <array>
#include <optional>

namespace DeskSprites {

namespace {

constexpr std::string_view drawn = "0123456789:%.-+ ";
constexpr std::size_t blank = drawn.size() - 1;

template <std::size_t rows>
using Glyphs = std::array<std::array<std::string_view, rows>, drawn.size()>;

// clang-format off
constexpr Glyphs<7> smallGlyphs = {{
    {".##.", "#..#", "#..#", "#..#", "#..#", "#..#", ".##."},
    {"..#.", ".##.", "..#.", "..#.", "..#.", "..#.", ".###"},
    {".##.", "#..#", "...#", "..#.", ".#..", "#...", "####"},
    {"###.", "...#", "...#", ".##.", "...#", "...#", "###."},
    {"#..#", "#..#", "#..#", "####", "...#", "...#", "...#"},
    {"####", "#...", "###.", "...#", "...#", "#..#", ".##."},
    {".##.", "#...", "#...", "###.", "#..#", "#..#", ".##."},
    {"####", "...#", "...#", "..#.", "..#.", ".#..", ".#.."},
    {".##.", "#..#", "#..#", ".##.", "#..#", "#..#", ".##."},
    {".##.", "#..#", "#..#", ".###", "...#", "...#", ".##."},
    {".", ".", "#", ".", "#", ".", "."},
    {"##..#", "##.#.", "...#.", "..#..", ".#...", ".#.##", "#..##"},
    {".", ".", ".", ".", ".", ".", "#"},
    {"....", "....", "....", "####", "....", "....", "...."},
    {".....", "..#..", "..#..", "#####", "..#..", "..#..", "....."},
    {"....", "....", "....", "....", "....", "....", "...."},
}};

constexpr Glyphs<10> largeGlyphs = {{
    {".####.", "######", "##..##", "##..##", "##..##", "##..##", "##..##", "##..##", "######", ".####."},
    {"..##..", ".###..", "####..", "..##..", "..##..", "..##..", "..##..", "..##..", "######", "######"},
    {".####.", "######", "##..##", "....##", "...###", "..###.", ".###..", "###...", "######", "######"},
    {".####.", "######", "##..##", "....##", "..###.", "..###.", "....##", "##..##", "######", ".####."},
    {"...###", "..####", ".##.##", "##..##", "##..##", "######", "######", "....##", "....##", "....##"},
    {"######", "######", "##....", "#####.", "######", "....##", "....##", "##..##", "######", ".####."},
    {".####.", "#####.", "##....", "##....", "#####.", "######", "##..##", "##..##", "######", ".####."},
    {"######", "######", "....##", "....##", "...##.", "...##.", "..##..", "..##..", "..##..", "..##.."},
    {".####.", "######", "##..##", "##..##", ".####.", "######", "##..##", "##..##", "######", ".####."},
    {".####.", "######", "##..##", "##..##", "######", ".#####", "....##", "....##", ".#####", ".####."},
    {"..", "..", "##", "##", "..", "..", "##", "##", "..", ".."},
    {"##...##", "##..##.", "....##.", "...##..", "...##..", "..##...", "..##...", ".##....", ".##..##", "##...##"},
    {"..", "..", "..", "..", "..", "..", "..", "..", "##", "##"},
    {"......", "......", "......", "......", ".####.", ".####.", "......", "......", "......", "......"},
    {"......", "......", "..##..", "..##..", "######", "######", "..##..", "..##..", "......", "......"},
    {"......", "......", "......", "......", "......", "......", "......", "......", "......", "......"},
}};
// clang-format on

std::size_t glyphIndex(QChar character) {
    const std::size_t index = drawn.find(static_cast<char>(std::min<int>(character.unicode(), 0x7f)));
    return index == std::string_view::npos ? blank : index;
}

/// Calls `visit` with the rows of each glyph and its left edge in glyph pixels; returns the width of the
/// whole.
template <std::size_t rows, typename Visit>
int walk(const Glyphs<rows>& glyphs, int gap, QStringView text, Visit visit) {
    int x = 0;
    for (const QChar character : text) {
        const auto& glyph = glyphs[glyphIndex(character)];
        visit(glyph, x);
        x += static_cast<int>(glyph.front().size()) + gap;
    }
    return std::max(0, x - gap);
}

constexpr int smallGap = 1;
constexpr int largeGap = 1;

} // namespace

PixelDigits::PixelDigits(Face face, int pixel) : face_(face), pixel_(std::max(1, pixel)) {}

QSize PixelDigits::size(QStringView text) const {
    const auto ignore = [](const auto&, int) {};
    const bool small = face_ == Face::small;
    const int width =
        small ? walk(smallGlyphs, smallGap, text, ignore) : walk(largeGlyphs, largeGap, text, ignore);
    return {width * pixel_, (small ? 7 : 10) * pixel_};
}

void PixelDigits::paint(QPainter& painter, const QPoint& topLeft, QStringView text,
                        const QColor& colour) const {
    const auto paintGlyph = [&](const auto& glyph, int x) {
        paintPixelMap(painter, topLeft + QPoint(x * pixel_, 0), glyph, colour, pixel_);
    };
    if (face_ == Face::small) {
        walk(smallGlyphs, smallGap, text, paintGlyph);
    } else {
        walk(largeGlyphs, largeGap, text, paintGlyph);
    }
}

} // namespace DeskSprites
