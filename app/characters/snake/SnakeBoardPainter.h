#pragma once

#include "app/characters/snake/SnakePlace.h"
#include "app/characters/snake/SnakeTile.h"
#include "core/snake/SnakeGame.h"

#include <QRegion>

class QPainter;

namespace DeskSprites {

/// What of a game changes its picture from one step to the next.
struct SnakeMarks {
    FellowCore::SnakeCell head;
    FellowCore::SnakeCell tail;
    FellowCore::SnakeDirection direction;
    std::optional<FellowCore::SnakeCell> food;
    int beat = 0; ///< counts steps; the tongue and the glow go by it

    SnakeMarks(const FellowCore::SnakeGame& game, int beatNow);
};

/// Draws the board with its frame, the food and the snake, in device pixels.
class SnakeBoardPainter {
public:
    enum class Motion { full, reduced };

    explicit SnakeBoardPainter(const SnakePlace& place) : place_(place) {}
    /// Reduced, the glow keeps still and the tongue stays in.
    void setMotion(Motion motion) { motion_ = motion; }

    /// Draws what lies in `part`; nothing else may be drawn on.
    void paint(QPainter& painter, const QRegion& part, const FellowCore::SnakeGame& game, int beat) const;
    /// What one step has made another, or a new food.
    QRegion changed(const SnakeMarks& before, const SnakeMarks& after) const;

private:
    void paintFrame(QPainter& painter) const;
    void paintFood(QPainter& painter, FellowCore::SnakeCell food, int beat) const;
    void paintSnake(QPainter& painter, const QRegion& part, const FellowCore::SnakeGame& game,
                    int beat) const;
    bool showsTongue(int beat) const;
    double glowStrength(int beat) const;
    QRect aroundPixels(FellowCore::SnakeCell cell) const;

    const SnakePlace& place_;
    Motion motion_ = Motion::full;
};

} // namespace DeskSprites
