#include "app/characters/batti/PixelSpriteView.h"

#include "app/desktop/PixelArtwork.h"
#include "app/desktop/PixelDigits.h"
#include "app/desktop/PixelFrame.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace DeskSprites {

namespace {

const QColor badgeContour(0x2c, 0x17, 0x1a);
const QColor badgePlate(0x33, 0x23, 0x2a);
const QColor badgeInk(0xff, 0xf9, 0xe8);
constexpr int badgePadding = 3; ///< glyph pixels around the digits

} // namespace

PixelSpriteView::PixelSpriteView(std::shared_ptr<const FellowCore::ManifestCharacter> character,
                                 std::array<QImage, 3> lamps, const Platform::Clock& clock)
    : character_(std::move(character)), body_(PixelArtwork::image(*character_->images().at("idle"))),
      lamps_(std::move(lamps)), clock_(clock) {
    lightTimer_.setSingleShot(true);
    lightTimer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&lightTimer_, &QTimer::timeout, &lightTimer_, [this] { updateLight(); });
}

void PixelSpriteView::setLight(Light light, bool pulses) {
    if (hasLight_ && light == light_ && pulses == pulses_) {
        return; // told so every second, when only the badge needs paint
    }
    const FellowCore::MonotonicInstant now = clock_.monotonic();
    if (hasLight_ && light != light_) {
        lamp_.flashPhase(now);
    }
    hasLight_ = true;
    light_ = light;
    pulses_ = pulses;
    lamp_.setPulses(pulses, now);
    updateLight();
}

void PixelSpriteView::setBadge(const QString& badge) {
    if (badge == badge_) {
        return;
    }
    const bool sameWidth = badge.size() == badge_.size();
    badge_ = badge;
    if (sameWidth && surface()) {
        surface()->update(badgeRect().toAlignedRect());
    } else {
        updatePointerRegion();
        redraw();
    }
}

void PixelSpriteView::setMirrored(bool mirrored) {
    if (mirrored == mirrored_) {
        return;
    }
    mirrored_ = mirrored;
    updatePointerRegion();
    redraw();
}

void PixelSpriteView::setMotion(bool on) {
    lamp_.setReduced(!on);
    updateLight();
}

void PixelSpriteView::flashCompletion() {
    lamp_.flashCompletion(clock_.monotonic());
    updateLight();
}

void PixelSpriteView::clearFlashes() {
    lamp_.clearFlashes();
    updateLight();
}

void PixelSpriteView::setBadgeLift(double lift) {
    if (lift == badgeLift_) {
        return;
    }
    badgeLift_ = lift;
    updatePointerRegion();
    redraw();
}

void PixelSpriteView::updateLight() {
    const auto next = lamp_.untilNextChange(clock_.monotonic());
    if (next) {
        lightTimer_.start(static_cast<int>(std::ceil(*next * 1000)));
    } else {
        lightTimer_.stop();
    }
    redraw();
}

bool PixelSpriteView::containsArt(FellowCore::Point window) const {
    const FellowCore::Rect& art = layout().artwork;
    const double x = (window.x - art.x) / art.width;
    return character_->opaque("idle", {mirrored_ ? 1 - x : x, (window.y - art.y) / art.height});
}

std::vector<FellowCore::AlphaRun> PixelSpriteView::opaqueRuns() const {
    return character_->alphaRuns("idle");
}

void PixelSpriteView::paint(QPainter& painter, QSizeF) {
    drawCanvas(painter, body_);
    painter.setOpacity(lamp_.brightness(clock_.monotonic()));
    drawCanvas(painter, lamps_.at(static_cast<std::size_t>(light_)));
    painter.setOpacity(1);
    drawBadge(painter);
}

int PixelSpriteView::badgePixel() const {
    return std::clamp(static_cast<int>(std::lround(layout().unit)), 2, 4);
}

QRectF PixelSpriteView::badgeRect() const {
    const int pixel = badgePixel();
    const QSize digits = PixelDigits(PixelDigits::Face::small, pixel).size(badge_);
    const QSize plate(digits.width() + 2 * badgePadding * pixel,
                      digits.height() + 2 * (badgePadding - 1) * pixel);
    const double y = layout().size.height - plate.height() - badgeLift_;
    return {std::round(layout().ground.x - plate.width() / 2.0), std::round(y),
            static_cast<double>(plate.width()), static_cast<double>(plate.height())};
}

void PixelSpriteView::drawBadge(QPainter& painter) const {
    const int pixel = badgePixel();
    const QRect plate = badgeRect().toRect();
    fillStepped(painter, plate, 1, badgeContour);
    fillStepped(painter, plate.adjusted(pixel, pixel, -pixel, -pixel), 0, badgePlate);
    const QSize digits = PixelDigits(PixelDigits::Face::small, pixel).size(badge_);
    const QPoint corner(plate.x() + (plate.width() - digits.width()) / 2,
                        plate.y() + (plate.height() - digits.height()) / 2);
    PixelDigits(PixelDigits::Face::small, pixel).paint(painter, corner, badge_, badgeInk);
}

} // namespace DeskSprites
