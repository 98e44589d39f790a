#include "app/characters/clock/ClockFaces.h"

#include "app/desktop/PixelLetters.h"
#include "core/base/FileOperations.h"
#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <nlohmann/json.hpp>

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>

namespace DeskSprites {

using FellowCore::PixelClockGeometry;
using FellowCore::PixelClockHands;
using FellowCore::PixelClockPoint;

namespace {

constexpr std::size_t placesLimit = 65536;

// Of the cast's own ramps: ink, maroon, brass, white.
constexpr QRgb hourColour = 0xff38101a;
constexpr QRgb minuteColour = 0xff33232a;
constexpr QRgb hubColour = 0xffb5802e;
constexpr QRgb shadeColour = 0xffcdbfb4;
constexpr QRgb plateColour = 0xfffff9e8;
constexpr QRgb plateShade = 0xffcdbfb4;
constexpr QRgb rimColour = 0xff2c171a;
constexpr QRgb nameColour = 0xff33232a;

constexpr int platePadding = 2; ///< from the rim to the letters, at either side
constexpr int plateGap = 2;     ///< least space between two plates

constexpr PixelClockPoint dot[] = {{0, 0}};
constexpr PixelClockPoint cross[] = {{0, 0}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}};

/// Bresenham's line, each of its pixels stamped with a brush.
void drawHand(QPainter& painter, PixelClockPoint from, PixelClockPoint to,
              std::span<const PixelClockPoint> brush, QRgb colour) {
    const int width = std::abs(to.x - from.x);
    const int height = -std::abs(to.y - from.y);
    const int right = from.x < to.x ? 1 : -1;
    const int down = from.y < to.y ? 1 : -1;
    int error = width + height;
    for (PixelClockPoint at = from;;) {
        for (const PixelClockPoint& of : brush) {
            painter.fillRect(at.x + of.x, at.y + of.y, 1, 1, QColor::fromRgba(colour));
        }
        if (at == to) {
            return;
        }
        const int doubled = 2 * error;
        if (doubled >= height) {
            error += height;
            at.x += right;
        }
        if (doubled <= width) {
            error += width;
            at.y += down;
        }
    }
}

void hangPlate(QPainter& painter, const QRect& plate, const QString& name) {
    painter.fillRect(plate.adjusted(1, 0, -1, 0), QColor::fromRgba(rimColour));
    painter.fillRect(plate.adjusted(0, 1, 0, -1), QColor::fromRgba(rimColour));
    painter.fillRect(plate.adjusted(1, 1, -1, -1), QColor::fromRgba(plateColour));
    painter.fillRect(plate.left() + 1, plate.bottom() - 1, plate.width() - 2, 1,
                     QColor::fromRgba(plateShade));
    PixelLetters::paint(painter, plate.topLeft() + QPoint(1 + platePadding, 1), name,
                        QColor::fromRgba(nameColour));
}

PixelClockPoint moved(PixelClockPoint point, int by) {
    return {point.x + by, point.y + by};
}

} // namespace

ClockFaces::ClockFaces(const std::filesystem::path& folder, FellowCore::CharacterManifest::Grid grid)
    : empty_(grid.width, grid.height, QImage::Format_ARGB32_Premultiplied) {
    empty_.fill(Qt::transparent);
    loadPlaces(folder);
}

void ClockFaces::loadPlaces(const std::filesystem::path& folder) {
    const QRect canvas = empty_.rect();
    const auto dialFrom = [&](const FellowCore::JsonFields& places, std::string_view name) {
        const FellowCore::JsonFields place = places.object(name);
        const auto number = [&](std::string_view field, int most) {
            return static_cast<int>(std::clamp<std::int64_t>(place.integer(field), 0, most));
        };
        return Dial{{number("column", canvas.right()), number("row", canvas.bottom())},
                    number("radius", canvas.width())};
    };
    try {
        FellowCore::PosixFileOperations files;
        const FellowCore::Json document =
            FellowCore::parseJson(readWholeFile(files, folder / "places.json", placesLimit));
        const FellowCore::JsonFields places(document);
        const FellowCore::JsonFields names = places.object("names");
        const auto side = [&](std::string_view name) {
            const std::int64_t most = std::max(canvas.width(), canvas.height());
            return static_cast<int>(std::clamp<std::int64_t>(names.integer(name), 0, most));
        };
        large_ = dialFrom(places, "largeDial");
        small_ = {dialFrom(places, "leftDial"), dialFrom(places, "rightDial")};
        names_ =
            QRect(QPoint(side("left"), side("top")), QPoint(side("right") - 1, side("bottom") - 1)) & canvas;
    } catch (const std::runtime_error& error) {
        qWarning("Ghanta Ghar's dials stay blank: %s", error.what());
    }
}

PixelClockHands ClockFaces::homeHands(const Face& face) const {
    return PixelClockGeometry::hands(face.at, face.zone, large_.center, large_.radius * 5 / 8,
                                     large_.radius - 1);
}

PixelClockHands ClockFaces::sideHands(std::size_t side, const Face& face) const {
    const Dial& dial = small_[side];
    return PixelClockGeometry::hands(face.at, face.zone, dial.center, dial.radius / 2, dial.radius - 1);
}

void ClockFaces::draw(QPainter& painter, const QRectF& art, const Look& look) {
    overlay_.draw(painter, art, drawn_ != look, [&] { return compose(look); });
    drawn_ = look;
}

QImage ClockFaces::compose(const Look& look) const {
    QImage canvas = empty_;
    QPainter painter(&canvas);
    if (look.home && large_.radius > 0) {
        composeLarge(painter, *look.home);
    }
    for (std::size_t side = 0; side < small_.size(); ++side) {
        if (small_[side].radius > 0) {
            composeSmall(painter, small_[side], look.sides[side]);
        }
    }
    composeNames(painter, look);
    return canvas;
}

void ClockFaces::composeLarge(QPainter& painter, const PixelClockHands& hands) const {
    const PixelClockPoint middle = large_.center;
    drawHand(painter, moved(middle, 1), moved(hands.hour, 1), cross, shadeColour);
    drawHand(painter, moved(middle, 1), moved(hands.minute, 1), dot, shadeColour);
    drawHand(painter, middle, hands.hour, cross, hourColour);
    drawHand(painter, middle, hands.minute, dot, minuteColour);
    drawHand(painter, middle, middle, cross, hourColour);
    drawHand(painter, middle, middle, dot, hubColour);
}

void ClockFaces::composeSmall(QPainter& painter, const Dial& dial, const std::optional<Side>& side) const {
    if (side) {
        drawHand(painter, dial.center, side->hands.minute, dot, minuteColour);
        drawHand(painter, dial.center, side->hands.hour, dot, hourColour);
    } else { // taken off: the bare hub
        drawHand(painter, dial.center, dial.center, cross, minuteColour);
        drawHand(painter, dial.center, dial.center, dot, hubColour);
    }
}

void ClockFaces::composeNames(QPainter& painter, const Look& look) const {
    constexpr int frame = 2 * (1 + platePadding);
    std::array<QString, 2> names;
    std::array<int, 2> widths{};
    for (std::size_t side = 0; side < names.size(); ++side) {
        const QString name = look.sides[side] ? look.sides[side]->name : QString();
        names[side] = PixelLetters::canWrite(name) ? name : QString();
        widths[side] = names[side].isEmpty() ? 0 : PixelLetters::width(name) + frame;
    }
    // A long name may use what a short one leaves.
    const int room = names_.width() - plateGap;
    for (std::size_t side = 0; side < names.size(); ++side) {
        const int most = std::max(room / 2, room - widths[1 - side]);
        if (widths[side] > most) {
            names[side] = PixelLetters::fitted(names[side], most - frame);
            widths[side] = PixelLetters::width(names[side]) + frame;
        }
        if (!names[side].isEmpty()) {
            hangPlate(painter, plateOf(side, widths[side]), names[side]);
        }
    }
}

/// Under its dial, but not beyond the steps.
QRect ClockFaces::plateOf(std::size_t side, int width) const {
    const int middle = small_[side].center.x - width / 2;
    const int left = std::clamp(middle, names_.left(), std::max(names_.left(), names_.right() + 1 - width));
    return {left, names_.top(), width, names_.height()};
}

} // namespace DeskSprites
