#include "app/characters/snake/SnakeTile.h"

#include "core/snake/SnakeBoardLayout.h"

#include <array>
#include <cmath>
#include <string_view>

namespace DeskSprites {

using FellowCore::SnakeCell;
using FellowCore::SnakeDirection;
using FellowCore::SnakeGame;

namespace {

constexpr int side = FellowCore::SnakeBoardLayout::artUnitsPerTile;
using Map = std::array<std::string_view, side>;
using Grid = std::array<std::array<char, side>, side>;

// '.' is clear, K the outline, m the skin that is shaded afterwards, d and g the back's diamond, e an eye.
// All are drawn for a snake that heads right.
// clang-format off
constexpr Map head = {
    "..KKKK..",
    "KKmeemK.",
    "mmmeemmK",
    "mggmmmmK",
    "mggmmmmK",
    "mmmeemmK",
    "KKmeemK.",
    "..KKKK..",
};
constexpr Map sleepingHead = {
    "..KKKK..",
    "KKmmmmK.",
    "mmmKKmmK",
    "mggmmmmK",
    "mggmmmmK",
    "mmmKKmmK",
    "KKmmmmK.",
    "..KKKK..",
};
constexpr Map straight = {
    "........",
    "KKKKKKKK",
    "mmmmmmmm",
    "mmmmmmmm",
    "mmmmmmmm",
    "mmmmmmmm",
    "KKKKKKKK",
    "........",
};
/// Joins the cell on the left and the one below.
constexpr Map corner = {
    "........",
    "KKKKK...",
    "mmmmmK..",
    "mmmmmmK.",
    "mmmmmmK.",
    "mmmmmmK.",
    "KKmmmmK.",
    ".KmmmmK.",
};
constexpr Map diamond = {
    "........",
    "........",
    "...dd...",
    "..dggd..",
    "..dggd..",
    "...dd...",
    "........",
    "........",
};
constexpr Map tail = {
    "........",
    "......KK",
    "...KKKmm",
    ".KKmmmmm",
    ".KKmmmmm",
    "...KKKmm",
    "......KK",
    "........",
};
constexpr Map tongueMap = {
    "........",
    "........",
    "...t....",
    "ttt.....",
    "ttt.....",
    "...t....",
    "........",
    "........",
};
/// A mango: o its outline, y, a, b and c from lit to shaded, r its blush, s the stem, l and k the leaf.
constexpr Map mango = {
    "...slkk.",
    "..osllk.",
    ".oaaook.",
    "oyyaaboo",
    "oyaaabro",
    "oaaabrco",
    ".oabbco.",
    "..oooo..",
};
// clang-format on

struct Ink {
    char letter;
    QRgb colour;
};

/// The shades of the character's own picture.
constexpr std::array inks = {
    Ink{'K', qRgb(21, 45, 30)},   Ink{'L', qRgb(174, 210, 100)}, Ink{'M', qRgb(112, 164, 70)},
    Ink{'D', qRgb(65, 122, 52)},  Ink{'d', qRgb(65, 122, 52)},   Ink{'g', qRgb(233, 178, 62)},
    Ink{'e', qRgb(32, 20, 26)},   Ink{'w', qRgb(255, 249, 232)}, Ink{'t', qRgb(180, 62, 62)},
    Ink{'o', qRgb(68, 36, 19)},   Ink{'y', qRgb(251, 233, 160)}, Ink{'a', qRgb(251, 220, 122)},
    Ink{'b', qRgb(233, 178, 62)}, Ink{'c', qRgb(203, 135, 38)},  Ink{'r', qRgb(248, 116, 76)},
    Ink{'s', qRgb(92, 48, 32)},   Ink{'l', qRgb(112, 164, 70)},  Ink{'k', qRgb(37, 80, 42)},
};

QRgb colourOf(char letter) {
    for (const Ink& ink : inks) {
        if (ink.letter == letter) {
            return ink.colour;
        }
    }
    return qRgba(0, 0, 0, 0);
}

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

/// The map after so many quarter turns against the clock.
Grid turned(const Map& map, int quarters) {
    Grid grid{};
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            int toX = x;
            int toY = y;
            for (int i = 0; i < quarters; ++i) {
                const int before = toX;
                toX = toY;
                toY = side - 1 - before;
            }
            grid[at(toY)][at(toX)] = map[at(y)][at(x)];
        }
    }
    return grid;
}

int quartersTo(SnakeDirection direction) {
    switch (direction) {
    case SnakeDirection::right:
        return 0;
    case SnakeDirection::up:
        return 1;
    case SnakeDirection::left:
        return 2;
    case SnakeDirection::down:
        break;
    }
    return 3;
}

/// What lies beyond the cell is the next segment and throws no shade.
char letterAt(const Grid& grid, int x, int y) {
    const bool inside = x >= 0 && y >= 0 && x < side && y < side;
    return inside ? grid[at(y)][at(x)] : 'm';
}

bool isEdge(char letter) {
    return letter == 'K' || letter == '.';
}

char shaded(const Grid& grid, int x, int y) {
    const char letter = grid[at(y)][at(x)];
    const auto near = [&](int dx, int dy) { return letterAt(grid, x + dx, y + dy); };
    if (letter == 'e') {
        return near(-1, 0) != 'e' && near(0, -1) != 'e' ? 'w' : 'e';
    }
    if (letter != 'm') {
        return letter;
    }
    if (isEdge(near(0, -1)) || isEdge(near(-1, 0))) {
        return 'L';
    }
    return isEdge(near(0, 1)) || isEdge(near(1, 0)) ? 'D' : 'M';
}

QImage drawn(const Grid& grid) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            image.setPixel(x, y, colourOf(shaded(grid, x, y)));
        }
    }
    return image;
}

void addDiamond(Grid& grid) {
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (const char letter = diamond[at(y)][at(x)]; letter != '.') {
                grid[at(y)][at(x)] = letter;
            }
        }
    }
}

SnakeDirection directionFrom(SnakeCell from, SnakeCell to) {
    for (const SnakeDirection direction : FellowCore::allSnakeDirections) {
        if (from + FellowCore::offset(direction) == to) {
            return direction;
        }
    }
    return SnakeDirection::right;
}

Grid inner(SnakeDirection one, SnakeDirection other) {
    if (FellowCore::isOpposite(one, other)) {
        return turned(straight, quartersTo(one) % 2);
    }
    // The corner joins left and down; each turn against the clock takes both one on.
    for (int quarters = 0; quarters < 4; ++quarters) {
        const auto isOne = [quarters](SnakeDirection open) {
            const int from = (quartersTo(open) - quarters + 4) % 4;
            return from == quartersTo(SnakeDirection::left) || from == quartersTo(SnakeDirection::down);
        };
        if (isOne(one) && isOne(other)) {
            return turned(corner, quarters);
        }
    }
    return turned(straight, 0);
}

} // namespace

QImage SnakeTile::segment(const SnakeGame& game, std::size_t index, SnakeLook look) {
    const auto& body = game.body();
    if (index == 0) {
        return drawn(turned(look == SnakeLook::awake ? head : sleepingHead, quartersTo(game.direction())));
    }
    const SnakeDirection ahead = directionFrom(body[index], body[index - 1]);
    if (index + 1 == body.size()) {
        return drawn(turned(tail, quartersTo(ahead)));
    }
    Grid grid = inner(ahead, directionFrom(body[index], body[index + 1]));
    // Diamonds stay in their cells, so that a step changes only the two ends of the snake.
    if ((body[index].x + body[index].y) % 2 == 0) {
        addDiamond(grid);
    }
    return drawn(grid);
}

QImage SnakeTile::tongue(SnakeDirection direction) {
    return drawn(turned(tongueMap, quartersTo(direction)));
}

QImage SnakeTile::food() {
    return drawn(turned(mango, 0));
}

QImage SnakeTile::glow() {
    constexpr int wide = 3 * side;
    constexpr std::array alphas = {120, 120, 120, 120, 120, 96, 96, 64, 64, 32, 32, 14};
    QImage image(wide, wide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < wide; ++y) {
        for (int x = 0; x < wide; ++x) {
            const double middle = (wide - 1) / 2.0;
            const auto distance = at(static_cast<int>(std::hypot(x - middle, y - middle)));
            if (distance < alphas.size()) {
                image.setPixelColor(x, y, QColor(250, 196, 84, alphas[distance]));
            }
        }
    }
    return image;
}

} // namespace DeskSprites
