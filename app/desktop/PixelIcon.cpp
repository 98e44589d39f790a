#include "app/desktop/PixelIcon.h"

#include "app/desktop/PixelMap.h"

#include <algorithm>
#include <array>
#include <string>

namespace DeskSprites {

namespace {

using Picture = std::array<std::string_view, pixelIconSide>;

// clang-format off
Picture picture(PixelIcon icon) {
    switch (icon) {
    case PixelIcon::hide:
        return {".........",
                ".........",
                "#.......#",
                "##.....##",
                ".#######.",
                "..#####..",
                ".#.#.#.#.",
                "#..#.#..#",
                "........."};
    case PixelIcon::swap:
        return {"......#..",
                "......##.",
                "#########",
                "......##.",
                "..#...#..",
                ".##......",
                "#########",
                ".##......",
                "..#......"};
    case PixelIcon::bringAnother:
        return {"..##.....",
                ".####....",
                ".####....",
                "..##...#.",
                "......###",
                ".####..#.",
                "######...",
                "######...",
                "######..."};
    case PixelIcon::settings:
        return {"....#....",
                ".#.###.#.",
                "..#####..",
                ".##...##.",
                "###...###",
                ".##...##.",
                "..#####..",
                ".#.###.#.",
                "....#...."};
    case PixelIcon::reset:
        return {"...###.#.",
                ".#######.",
                ".##..###.",
                "##..####.",
                "##.......",
                "##.....##",
                ".##...##.",
                ".#######.",
                "...###..."};
    case PixelIcon::play:
        return {"..#......",
                "..###....",
                "..####...",
                "..######.",
                "..#######",
                "..######.",
                "..####...",
                "..###....",
                "..#......"};
    case PixelIcon::pause:
        return {".........",
                ".###.###.",
                ".###.###.",
                ".###.###.",
                ".###.###.",
                ".###.###.",
                ".###.###.",
                ".###.###.",
                "........."};
    case PixelIcon::skip:
        return {"#.....##.",
                "###...##.",
                "####..##.",
                "#####.##.",
                "########.",
                "#####.##.",
                "####..##.",
                "###...##.",
                "#.....##."};
    case PixelIcon::previous:
        return {".##.....#",
                ".##...###",
                ".##..####",
                ".##.#####",
                ".########",
                ".##.#####",
                ".##..####",
                ".##...###",
                ".##.....#"};
    case PixelIcon::smaller:
        return {".........",
                ".........",
                ".........",
                ".........",
                ".#######.",
                ".........",
                ".........",
                ".........",
                "........."};
    case PixelIcon::larger:
        return {".........",
                "....#....",
                "....#....",
                "....#....",
                ".#######.",
                "....#....",
                "....#....",
                "....#....",
                "........."};
    case PixelIcon::close:
        return {".........",
                ".#.....#.",
                "..#...#..",
                "...#.#...",
                "....#....",
                "...#.#...",
                "..#...#..",
                ".#.....#.",
                "........."};
    case PixelIcon::chevron:
        return {".........",
                ".........",
                ".##...##.",
                "..##.##..",
                "...###...",
                "....#....",
                ".........",
                ".........",
                "........."};
    case PixelIcon::back:
        return {".........",
                "...#.....",
                "..##.....",
                ".#######.",
                "########.",
                ".#######.",
                "..##.....",
                "...#.....",
                "........."};
    case PixelIcon::edit:
        return {"......##.",
                ".....####",
                "....#.###",
                "...#...#.",
                "..#...#..",
                ".#...#...",
                "##..#....",
                "####.....",
                "##......."};
    case PixelIcon::days:
        return {"..#...#..",
                "#########",
                "#########",
                "#.......#",
                "#.#.#.#.#",
                "#.......#",
                "#.#.#.#.#",
                "#.......#",
                "#########"};
    case PixelIcon::copy:
        return {"######...",
                "#....#...",
                "#..######",
                "#..#....#",
                "#..#....#",
                "####....#",
                "...#....#",
                "...#....#",
                "...######"};
    case PixelIcon::save:
        return {"....#....",
                "....#....",
                "....#....",
                "..#####..",
                "...###...",
                "....#....",
                "#.......#",
                "#.......#",
                "#########"};
    case PixelIcon::note:
        return {"...######",
                "...######",
                "...#....#",
                "...#....#",
                "...#....#",
                ".###..###",
                "####.####",
                "####.####",
                ".##...##."};
    case PixelIcon::undo:
        return {".........",
                "..#......",
                ".##......",
                "#######..",
                ".##...##.",
                "..#....##",
                ".......##",
                "......##.",
                "..#####.."};
    }
    return {};
}
// clang-format on

/// Playing and pausing point the same way everywhere; ways back and forth follow the line of reading.
bool followsReading(PixelIcon icon) {
    return icon == PixelIcon::skip || icon == PixelIcon::previous || icon == PixelIcon::bringAnother ||
           icon == PixelIcon::back || icon == PixelIcon::undo;
}

} // namespace

void paintPixelIcon(QPainter& painter, const QPoint& topLeft, PixelIcon icon, const QColor& colour, int pixel,
                    bool mirrored) {
    const Picture rows = picture(icon);
    if (!mirrored || !followsReading(icon)) {
        paintPixelMap(painter, topLeft, rows, colour, pixel);
        return;
    }
    std::array<std::string, pixelIconSide> turned;
    std::transform(rows.begin(), rows.end(), turned.begin(),
                   [](std::string_view row) { return std::string(row.rbegin(), row.rend()); });
    paintPixelMap(painter, topLeft, turned, colour, pixel);
}

} // namespace DeskSprites
