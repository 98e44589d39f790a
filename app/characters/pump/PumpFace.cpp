#include "app/characters/pump/PumpFace.h"

#include "app/characters/pump/PumpColours.h"
#include "app/desktop/PixelArtwork.h"
#include "app/desktop/PixelDigits.h"
#include "core/base/FileOperations.h"
#include "core/base/Json.h"
#include "core/base/WholeFile.h"
#include "core/pump/PumpDigitMotion.h"
#include "platform/image/PngDecoder.h"

#include <nlohmann/json.hpp>

#include <QDebug>

#include <algorithm>
#include <array>
#include <cmath>

namespace DeskSprites {

using FellowCore::PumpDigitMotion;

namespace {

constexpr std::size_t placesLimit = 65536;
constexpr std::array lampNames{"lamp-amber", "lamp-red", "lamp-red-dim", "lamp-green"};
constexpr int glyphWidth = 4;
constexpr int glyphGap = 1;

QRect placeFrom(const FellowCore::JsonFields& places, std::string_view name, const QRect& canvas) {
    const FellowCore::JsonFields place = places.object(name);
    const auto at = [&](std::string_view side) { return static_cast<int>(place.integer(side)); };
    return QRect(QPoint(at("left"), at("top")), QPoint(at("right") - 1, at("bottom") - 1)) & canvas;
}

} // namespace

PumpFace::PumpFace(const std::filesystem::path& folder, FellowCore::CharacterManifest::Grid grid)
    : empty_(grid.width, grid.height, QImage::Format_ARGB32_Premultiplied) {
    empty_.fill(Qt::transparent);
    loadPlaces(folder);
    loadLamps(folder, empty_.size());
}

void PumpFace::loadPlaces(const std::filesystem::path& folder) {
    try {
        FellowCore::PosixFileOperations files;
        const FellowCore::Json document =
            FellowCore::parseJson(readWholeFile(files, folder / "places.json", placesLimit));
        const FellowCore::JsonFields places(document);
        tank_ = placeFrom(places, "tank", empty_.rect());
        digits_ = placeFrom(places, "digits", empty_.rect());
    } catch (const std::runtime_error& error) {
        qWarning("Pump's gauge stays blank: %s", error.what());
    }
}

void PumpFace::loadLamps(const std::filesystem::path& folder, QSize size) {
    for (const char* name : lampNames) {
        try {
            const FellowCore::PixelSize wanted{size.width(), size.height()};
            lamps_[name] =
                PixelArtwork::image(Platform::readPng(folder / (std::string(name) + ".png"), wanted));
        } catch (const std::runtime_error& error) {
            qWarning("Pump's lamp stays dark: %s", error.what());
        }
    }
}

void PumpFace::draw(QPainter& painter, const QRectF& art, const Look& look) {
    overlay_.draw(painter, art, drawn_ != look, [&] { return compose(look); });
    drawn_ = look;
}

QImage PumpFace::compose(const Look& look) const {
    QImage canvas = empty_;
    QPainter painter(&canvas);
    composeTank(painter, look.gauge);
    composeDigits(painter, look);
    if (const auto lamp = look.lamp ? lamps_.find(*look.lamp) : lamps_.end(); lamp != lamps_.end()) {
        painter.drawImage(0, 0, lamp->second);
    }
    return canvas;
}

void PumpFace::composeTank(QPainter& painter, const FellowCore::PumpGauge& gauge) const {
    const double fraction = gauge.tankFraction.value_or(0);
    if (fraction <= 0 || tank_.isEmpty()) {
        return;
    }
    // A drop is left for as long as anything is.
    const int height = std::max(1, static_cast<int>(std::lround(fraction * tank_.height())));
    const QRect level(tank_.left(), tank_.bottom() + 1 - height, tank_.width(), height);
    const PumpColours::Liquid liquid = PumpColours::liquid(gauge.light);
    painter.fillRect(level, liquid.body);
    painter.fillRect(level.right() - 2, level.top(), 3, height, liquid.shadow);
    painter.fillRect(level.left() + 2, level.top(), 2, height, liquid.light);
    painter.fillRect(level.left(), level.top(), level.width(), 1, liquid.surface);
    if (height > 1) {
        painter.fillRect(level.left(), level.top() + 1, level.width(), 1, liquid.light);
    }
}

void PumpFace::composeDigits(QPainter& painter, const Look& look) const {
    if (digits_.isEmpty()) {
        return;
    }
    const PixelDigits face(PixelDigits::Face::small, 1);
    const QColor colour = PumpColours::digits(look.gauge.light);
    const QString percent = look.gauge.digits ? QStringLiteral("%") : QString();
    const QSize whole = face.size(QStringLiteral("000") + percent);
    const QPoint start(digits_.left() + (digits_.width() - whole.width()) / 2,
                       digits_.top() + (digits_.height() - PumpDigitMotion::glyphRows) / 2);
    painter.setClipRect(QRect(digits_.left(), start.y(), digits_.width(), PumpDigitMotion::glyphRows));
    for (int index = 0; index < look.digits.size(); ++index) {
        const QPoint at = start + QPoint(index * (glyphWidth + glyphGap), 0);
        const QString now = look.digits.mid(index, 1);
        const QString before = look.oldDigits.mid(index, 1);
        const int rolled = now == before ? PumpDigitMotion::glyphRows : look.rows;
        face.paint(painter, at - QPoint(0, rolled), before, colour);
        face.paint(painter, at + QPoint(0, PumpDigitMotion::glyphRows - rolled), now, colour);
    }
    face.paint(painter, start + QPoint(3 * (glyphWidth + glyphGap), 0), percent, colour);
    painter.setClipping(false);
}

} // namespace DeskSprites
