#include "app/characters/snake/SnakeBoardPainter.h"

#include <QPainter>

#include <array>
#include <cstdlib>

namespace DeskSprites {

using FellowCore::SnakeCell;
using FellowCore::SnakeGame;

namespace {

constexpr int tongueRhythm = 9; ///< steps from one flick to the next
constexpr int tongueSteps = 2;
constexpr int glowRhythm = 12;

// The rim of her basket.
constexpr QColor rimContour(53, 25, 15);
constexpr QColor rimLit(251, 220, 122);
constexpr QColor rimRope(233, 178, 62);
constexpr QColor rimShade(147, 86, 26);
constexpr int ropeLength = 6; ///< art pixels from one strand to the next

/// One side of the rim: its rope, and a dark stroke where one strand ends and the next begins.
void paintRope(QPainter& painter, const QRect& rope, int unit, const QColor& colour) {
    painter.fillRect(rope, colour);
    const bool lies = rope.width() > rope.height();
    const int length = lies ? rope.width() : rope.height();
    for (int along = ropeLength * unit; along < length; along += ropeLength * unit) {
        const QRect stroke = lies ? QRect(rope.left() + along, rope.top(), unit, rope.height())
                                  : QRect(rope.left(), rope.top() + along, rope.width(), unit);
        painter.fillRect(stroke, rimShade);
    }
}

} // namespace

SnakeMarks::SnakeMarks(const SnakeGame& game, int beatNow)
    : head(game.body().front()), tail(game.body().back()), direction(game.direction()), food(game.food()),
      beat(beatNow) {}

void SnakeBoardPainter::paint(QPainter& painter, const QRegion& part, const SnakeGame& game, int beat) const {
    if (!(part - QRegion(place_.boardPixels())).isEmpty()) {
        paintFrame(painter);
    }
    painter.save();
    painter.setClipRect(place_.boardPixels(), Qt::IntersectClip);
    if (game.food()) {
        paintFood(painter, *game.food(), beat);
    }
    paintSnake(painter, part, game, beat);
    painter.restore();
}

void SnakeBoardPainter::paintFrame(QPainter& painter) const {
    const int unit = place_.artPixels();
    const QRect outer = place_.framePixels();
    const QRect board = place_.boardPixels();
    const QRegion ring = QRegion(outer) - QRegion(board);
    const QRegion corners = QRegion(outer.left(), outer.top(), unit, unit) +
                            QRegion(outer.right() + 1 - unit, outer.top(), unit, unit) +
                            QRegion(outer.left(), outer.bottom() + 1 - unit, unit, unit) +
                            QRegion(outer.right() + 1 - unit, outer.bottom() + 1 - unit, unit, unit);
    painter.save();
    painter.setClipRegion(ring - corners, Qt::IntersectClip);
    painter.fillRect(outer, rimContour);
    const QRect rope = outer.adjusted(unit, unit, -unit, -unit);
    const int thick = board.top() - rope.top() - unit;
    paintRope(painter, {rope.left(), rope.bottom() + 1 - thick, rope.width(), thick}, unit, rimRope);
    paintRope(painter, {rope.right() + 1 - thick, rope.top(), thick, rope.height()}, unit, rimRope);
    paintRope(painter, {rope.left(), rope.top(), rope.width(), thick}, unit, rimLit);
    paintRope(painter, {rope.left(), rope.top(), thick, rope.height()}, unit, rimLit);
    painter.restore();
}

void SnakeBoardPainter::paintFood(QPainter& painter, SnakeCell food, int beat) const {
    painter.setOpacity(glowStrength(beat));
    painter.drawImage(aroundPixels(food), SnakeTile::glow());
    painter.setOpacity(1);
    painter.drawImage(place_.cellPixels(food), SnakeTile::food());
}

void SnakeBoardPainter::paintSnake(QPainter& painter, const QRegion& part, const SnakeGame& game,
                                   int beat) const {
    const auto& body = game.body();
    const SnakeLook look =
        game.status() == FellowCore::SnakeStatus::gameOver ? SnakeLook::asleep : SnakeLook::awake;
    // From the tail on, so that the head lies on whatever it ran into.
    for (std::size_t i = body.size(); i-- > 0;) {
        const QRect cell = place_.cellPixels(body[i]);
        if (part.intersects(cell)) {
            painter.drawImage(cell, SnakeTile::segment(game, i, look));
        }
    }
    if (showsTongue(beat) && look == SnakeLook::awake) {
        const QRect ahead = place_.cellPixels(body.front() + FellowCore::offset(game.direction()));
        painter.drawImage(ahead, SnakeTile::tongue(game.direction()));
    }
}

bool SnakeBoardPainter::showsTongue(int beat) const {
    return motion_ == Motion::full && beat % tongueRhythm < tongueSteps;
}

double SnakeBoardPainter::glowStrength(int beat) const {
    if (motion_ == Motion::reduced) {
        return 1;
    }
    const int away = std::abs(beat % glowRhythm - glowRhythm / 2); // 6 to 0 and back
    return 0.7 + 0.05 * away;
}

QRect SnakeBoardPainter::aroundPixels(SnakeCell cell) const {
    const int tile = place_.tilePixels();
    return place_.cellPixels(cell).adjusted(-tile, -tile, tile, tile);
}

QRegion SnakeBoardPainter::changed(const SnakeMarks& before, const SnakeMarks& after) const {
    QRegion region;
    for (const SnakeMarks* marks : {&before, &after}) {
        region += place_.cellPixels(marks->head);
        region += place_.cellPixels(marks->tail);
        if (showsTongue(marks->beat)) {
            region += place_.cellPixels(marks->head + FellowCore::offset(marks->direction));
        }
    }
    if (before.food != after.food || glowStrength(before.beat) != glowStrength(after.beat)) {
        for (const auto& food : {before.food, after.food}) {
            region += food ? aroundPixels(*food) : QRect();
        }
    }
    return region & place_.boardPixels();
}

} // namespace DeskSprites
