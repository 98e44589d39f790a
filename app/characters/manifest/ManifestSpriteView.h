#pragma once

#include "app/desktop/SpriteView.h"
#include "core/art/ManifestCharacter.h"

#include <QImage>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace DeskSprites {

/// A manifest character's drawing surface: one pose at a time, and what an ability draws over it.
class ManifestSpriteView : public SpriteView {
public:
    /// Draws over the art. `art` is the canvas in the surface's points (y down), `unit` the points of one art
    /// pixel.
    std::function<void(QPainter& painter, const QRectF& art, double unit)> drawOverlay;

    explicit ManifestSpriteView(std::shared_ptr<const FellowCore::ManifestCharacter> character);

    const std::string& pose() const { return pose_; }
    /// An unknown pose shows "idle".
    void setPose(const std::string& pose);
    /// Draws again, for an overlay that has changed.
    void refreshOverlay() { redraw(); }

    void paint(QPainter& painter, QSizeF size) override;

protected:
    std::vector<FellowCore::AlphaRun> opaqueRuns() const override;

private:
    const QImage& image();

    std::shared_ptr<const FellowCore::ManifestCharacter> character_;
    std::string pose_ = "idle";
    std::map<std::string, QImage> images_; ///< poses in Qt's form, made when first shown
};

} // namespace DeskSprites
