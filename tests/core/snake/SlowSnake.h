#pragma once

#include "core/snake/SnakeGame.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace FellowCore {

/// The game told as plainly as it can be, to hold the quick one against: every question is answered by
/// looking at the whole body or the whole board. It knows no full board.
struct SlowSnake {
    int columns;
    int rows;
    std::vector<SnakeCell> body;
    SnakeDirection direction = SnakeDirection::right;
    std::optional<SnakeCell> food;
    int score = 0;
    SnakeStatus status = SnakeStatus::running;
    std::vector<SnakeDirection> turns;

    SlowSnake(int wide, int high, SnakeCell wish) : columns(wide), rows(high) {
        for (int back = 0; back < 4; ++back) {
            body.push_back({columns / 2 - back, rows / 2});
        }
        place(wish);
    }

    bool isSafe(SnakeCell cell) const {
        const bool inside = cell.x >= 0 && cell.y >= 0 && cell.x < columns && cell.y < rows;
        return inside && std::ranges::find(body, cell) == body.end();
    }

    std::vector<SnakeCell> freeCells() const {
        std::vector<SnakeCell> cells;
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < columns; ++x) {
                if (isSafe({x, y})) {
                    cells.push_back({x, y});
                }
            }
        }
        return cells;
    }

    void place(SnakeCell wish) { food = isSafe(wish) ? wish : freeCells().front(); }

    void turn(SnakeDirection wanted) {
        const SnakeDirection last = turns.empty() ? direction : turns.back();
        const bool alongTheSameAxis = (offset(wanted).x == 0) == (offset(last).x == 0);
        if (turns.size() < 2 && !alongTheSameAxis) {
            turns.push_back(wanted);
        }
    }

    SnakeStep step(SnakeCell wish) {
        if (!turns.empty()) {
            direction = turns.front();
            turns.erase(turns.begin());
        }
        const SnakeCell next = body.front() + offset(direction);
        const SnakeCell tail = body.back();
        const bool eats = food == next;
        if (!eats) {
            body.pop_back();
        }
        if (!isSafe(next)) {
            if (!eats) {
                body.push_back(tail);
            }
            status = SnakeStatus::gameOver;
            turns.clear();
            return next.x < 0 || next.y < 0 || next.x >= columns || next.y >= rows ? SnakeStep::wallCollision
                                                                                   : SnakeStep::selfCollision;
        }
        body.insert(body.begin(), next);
        if (eats) {
            ++score;
            place(wish);
        }
        return eats ? SnakeStep::ate : SnakeStep::moved;
    }
};

} // namespace FellowCore
