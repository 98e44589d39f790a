#pragma once

#include "core/snake/SnakeGame.h"

#include <sstream>
#include <stdexcept>
#include <string>

namespace FellowCore {

/// A chooser that always gives the same cell, whether it is free or not.
inline ChooseSnakeFood foodAt(int x, int y) {
    return [x, y](const SnakeFreeCells&) { return SnakeCell{x, y}; };
}

/// The direction that follows a closed way through all cells of a board with an even number of rows: along
/// the rows from the bottom up, to the right in even ones, and back down the first column. A new game whose
/// middle row is even starts on it.
inline SnakeDirection alongCircuit(SnakeCell at, int columns, int rows) {
    if (at.x == 0) {
        return at.y == 0 ? SnakeDirection::right : SnakeDirection::down;
    }
    if (at.y % 2 == 0) {
        return at.x < columns - 1 ? SnakeDirection::right : SnakeDirection::up;
    }
    return at.x > 1 || at.y == rows - 1 ? SnakeDirection::left : SnakeDirection::up;
}

/// A game on 8 by 8 cells that is told what happens to it in words and tells what came of it.
///
/// The snake begins on 1,4 to 4,4 with its head to the right, the food on 0,0. A script is a row of: the
/// turns "up", "down", "left", "right"; "food=5,4"; "pause", "resume" and "toggle"; and dots, one for each
/// step. The answer has a letter for each step (m moved, e ate, W wall, S self, F filled, - none), an "x" for
/// each turn or pause that was refused, and then status, head, direction, score and turns still waiting.
class SnakeScript {
public:
    std::string run(const std::string& script) {
        std::istringstream words(script);
        std::string log;
        for (std::string word; words >> word;) {
            if (word.front() == '.') {
                for (std::size_t dot = 0; dot < word.size(); ++dot) {
                    log += "-meWSF"[static_cast<int>(game.step(foodAt(0, 0)))];
                }
            } else if (!perform(word)) {
                log += 'x';
            }
        }
        return log + described();
    }

    SnakeGame game{8, 8, foodAt(0, 0)};

private:
    bool perform(const std::string& word) {
        if (word.starts_with("food=")) {
            game.placeFood(foodAt(word[5] - '0', word[7] - '0'));
            return true;
        }
        if (word == "pause" || word == "resume" || word == "toggle") {
            return word == "pause" ? game.pause() : word == "resume" ? game.resume() : game.togglePause();
        }
        for (const SnakeDirection direction : allSnakeDirections) {
            if (word == name(direction)) {
                return game.turn(direction);
            }
        }
        throw std::invalid_argument(word);
    }

    std::string described() const {
        static constexpr const char* statuses[] = {"running", "paused", "over", "won"};
        const SnakeCell head = game.body().front();
        std::ostringstream text;
        text << ' ' << statuses[static_cast<int>(game.status())] << ' ' << head.x << ',' << head.y << ' '
             << name(game.direction()) << ' ' << game.score() << ' ' << game.turns().size();
        return text.str();
    }

    static std::string name(SnakeDirection direction) {
        static constexpr const char* names[] = {"up", "down", "left", "right"};
        return names[static_cast<int>(direction)];
    }
};

} // namespace FellowCore
