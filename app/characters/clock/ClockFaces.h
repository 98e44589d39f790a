#pragma once

#include "app/desktop/PixelOverlay.h"
#include "core/art/CharacterManifest.h"
#include "core/base/Calendar.h"
#include "core/worldclock/PixelClockGeometry.h"

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QString>

#include <array>
#include <filesystem>
#include <optional>

namespace DeskSprites {

/// What is drawn over the tower's picture: the hands of its dials, and the names of the cities at its sides
/// on small plates at its foot.
class ClockFaces {
public:
    /// What one dial shows.
    struct Face {
        FellowCore::Instant at;
        FellowCore::Calendar zone;
    };
    struct Side {
        FellowCore::PixelClockHands hands;
        QString name;

        friend bool operator==(const Side&, const Side&) = default;
    };
    /// One look of it; a dial without a time has no hands.
    struct Look {
        std::optional<FellowCore::PixelClockHands> home;
        std::array<std::optional<Side>, 2> sides; ///< left and right

        friend bool operator==(const Look&, const Look&) = default;
    };

    /// Loads the places of dials and plates from the character's folder. Blocks. Without a place, nothing is
    /// drawn there, with a line in the log.
    ClockFaces(const std::filesystem::path& folder, FellowCore::CharacterManifest::Grid grid);

    FellowCore::PixelClockHands homeHands(const Face& face) const;
    /// The hands of the left dial (0) or the right one (1).
    FellowCore::PixelClockHands sideHands(std::size_t side, const Face& face) const;
    /// `art` is the canvas in the painter's points.
    void draw(QPainter& painter, const QRectF& art, const Look& look);
    /// The same at the art's own size.
    QImage compose(const Look& look) const;

private:
    /// A dial in art pixels: its very middle, and how far a hand may reach.
    struct Dial {
        FellowCore::PixelClockPoint center;
        int radius = 0;
    };

    void loadPlaces(const std::filesystem::path& folder);
    void composeLarge(QPainter& painter, const FellowCore::PixelClockHands& hands) const;
    void composeSmall(QPainter& painter, const Dial& dial, const std::optional<Side>& side) const;
    void composeNames(QPainter& painter, const Look& look) const;
    QRect plateOf(std::size_t side, int width) const;

    QImage empty_; ///< the canvas
    Dial large_;
    std::array<Dial, 2> small_;
    QRect names_;               ///< the band in which the plates hang
    std::optional<Look> drawn_; ///< what `overlay_` shows
    PixelOverlay overlay_;
};

} // namespace DeskSprites
