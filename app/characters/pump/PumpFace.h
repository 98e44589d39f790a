#pragma once

#include "app/desktop/PixelOverlay.h"
#include "core/art/CharacterManifest.h"
#include "core/pump/PumpGauge.h"

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QString>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace DeskSprites {

/// What is drawn over Pump's picture: the level in the tank, the digits on the dark panel and the light on
/// top.
class PumpFace {
public:
    /// One look of it.
    struct Look {
        FellowCore::PumpGauge gauge{std::nullopt};
        QString digits;                  ///< three characters
        QString oldDigits;               ///< which they roll away
        int rows = 0;                    ///< how many rows of the new digits have rolled in
        std::optional<std::string> lamp; ///< the name of its art; nothing while it is out

        friend bool operator==(const Look&, const Look&) = default;
    };

    /// Loads the places and the lamps from the character's folder. Blocks. Without a place, nothing is drawn
    /// there, with a line in the log.
    PumpFace(const std::filesystem::path& folder, FellowCore::CharacterManifest::Grid grid);

    /// `art` is the canvas in the painter's points.
    void draw(QPainter& painter, const QRectF& art, const Look& look);

private:
    void loadPlaces(const std::filesystem::path& folder);
    void loadLamps(const std::filesystem::path& folder, QSize size);
    QImage compose(const Look& look) const;
    void composeTank(QPainter& painter, const FellowCore::PumpGauge& gauge) const;
    void composeDigits(QPainter& painter, const Look& look) const;

    QImage empty_; ///< the canvas
    QRect tank_;   ///< in art pixels, as are the others
    QRect digits_;
    std::map<std::string, QImage> lamps_;
    std::optional<Look> drawn_; ///< what `overlay_` shows
    PixelOverlay overlay_;
};

} // namespace DeskSprites
