#pragma once

#include "app/characters/batti/LampLight.h"
#include "app/desktop/SpriteView.h"
#include "core/art/ManifestCharacter.h"
#include "core/focus/BattiTimerPresentation.h"
#include "platform/Clock.h"

#include <QImage>
#include <QTimer>

#include <array>
#include <memory>

namespace DeskSprites {

/// Batti as it is drawn: the lamp with its light, the other way round when mirrored, and the badge at its
/// feet.
class PixelSpriteView : public SpriteView {
public:
    using Light = FellowCore::BattiTimerPresentation::Light;

    /// `lamps` are whole-canvas pictures of the lit lens for red, amber and green.
    PixelSpriteView(std::shared_ptr<const FellowCore::ManifestCharacter> character,
                    std::array<QImage, 3> lamps, const Platform::Clock& clock);

    void setLight(Light light, bool pulses);
    void setBadge(const QString& badge);
    void setMirrored(bool mirrored);
    /// Whether the lamp may flash and breathe at all; off while Batti is not on the desktop.
    void setMotion(bool on);
    void flashCompletion();
    void clearFlashes();
    /// How far the badge must stand above its own place so as not to be cut off, in points.
    void setBadgeLift(double lift);

    /// The opaque art under a point of the surface (points, y up).
    bool containsArt(FellowCore::Point window) const;

    void paint(QPainter& painter, QSizeF size) override;

protected:
    std::vector<FellowCore::AlphaRun> opaqueRuns() const override;
    bool isMirrored() const override { return mirrored_; }
    std::vector<QRectF> extraRegion() const override { return {badgeRect()}; }

private:
    void updateLight();
    QRectF badgeRect() const;
    void drawBadge(QPainter& painter) const;
    int badgePixel() const;

    std::shared_ptr<const FellowCore::ManifestCharacter> character_;
    QImage body_;
    std::array<QImage, 3> lamps_;
    const Platform::Clock& clock_;
    LampLight lamp_;
    Light light_ = Light::amber;
    QString badge_;
    double badgeLift_ = 0;
    bool mirrored_ = false;
    bool hasLight_ = false;
    bool pulses_ = false;
    QTimer lightTimer_;
};

} // namespace DeskSprites
