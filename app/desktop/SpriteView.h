#pragma once

#include "app/desktop/PixelCharacterFeedback.h"
#include "core/art/AlphaMask.h"
#include "core/art/ManifestCharacterLayout.h"
#include "platform/DesktopSurface.h"

#include <QImage>
#include <QMenu>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace DeskSprites {

/// Whether a character is on its way or has arrived.
enum class MovePhase { dragging, ended };

/// The drawing and the pointer of one character on its surface: a click, a drag by the body, Ctrl and the
/// wheel for the size, the menu, and dropped text. What is drawn is the subclass's.
class SpriteView : public Platform::DesktopSurfaceClient {
public:
    std::function<void()> onClick;
    std::function<void(MovePhase)> onMoved;
    /// Whole notches of the wheel with Ctrl held; positive is larger.
    std::function<void(int notches)> onResize;
    std::function<void(const QString&)> onDropText;
    std::function<std::unique_ptr<QMenu>()> menuProvider;
    std::function<void()> onBackingChanged;

    SpriteView();

    /// The surface that shows this view; it outlives the view's use. Called once.
    void attach(Platform::DesktopSurface& surface);
    void setLayout(const FellowCore::ManifestCharacterLayout& layout);
    const FellowCore::ManifestCharacterLayout& layout() const { return layout_; }
    PixelCharacterFeedback& feedback() { return feedback_; }
    bool isDragging() const { return dragging_; }
    /// Opens the menu of `menuProvider` at a point of the screen; nothing when it gives none.
    void popupMenu(FellowCore::Point screen) const;

    void pointerPressed(const Platform::PointerEvent& event) override;
    void pointerMoved(const Platform::PointerEvent& event) override;
    void pointerReleased(const Platform::PointerEvent& event) override;
    void pointerCancelled() override;
    void wheelTurned(const Platform::WheelEvent& event) override;
    void contextMenuRequested(FellowCore::Point screen) override;
    void textDropped(const QString& text) override;
    void backingScaleChanged(double scale) override;
    void accessiblePress() override;
    void accessibleShowMenu() override;

protected:
    /// The opaque blocks of what is drawn now, in art pixels from the top left of the canvas.
    virtual std::vector<FellowCore::AlphaRun> opaqueRuns() const = 0;
    /// What takes the pointer besides the art, in the surface's points (y down).
    virtual std::vector<QRectF> extraRegion() const { return {}; }
    /// Whether the art is drawn the other way round.
    virtual bool isMirrored() const { return false; }
    /// How many pictures are kept at their size on the screen: a pose, its blink, and Batti's lamp over it.
    virtual std::size_t cachedPictures() const { return 4; }

    /// Tells the surface which part takes the pointer now.
    void updatePointerRegion();
    void redraw();
    /// Draws a picture of the whole canvas where the art stands, at full device resolution.
    void drawCanvas(QPainter& painter, const QImage& art) const;
    /// The canvas in the surface's own coordinates (points, y down), lowered by the feedback.
    QRectF canvasRect() const;
    Platform::DesktopSurface* surface() const { return surface_; }

private:
    struct Cached {
        qint64 key = 0;
        bool mirrored = false;
        QImage image;
    };

    const QImage& scaledArt(const QImage& art, QSize device, bool mirrored) const;
    void endDrag();

    Platform::DesktopSurface* surface_ = nullptr;
    FellowCore::ManifestCharacterLayout layout_;
    PixelCharacterFeedback feedback_;
    FellowCore::Point dragOrigin_;
    FellowCore::Point initialOrigin_;
    bool pressed_ = false;
    bool dragging_ = false;
    int wheelRest_ = 0;
    mutable std::vector<Cached> cache_; ///< the pictures last drawn, at their size on the screen
};

} // namespace DeskSprites
