#include "app/desktop/SpriteView.h"

#include "app/desktop/PixelArtwork.h"
#include "platform/ScreenSpace.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {

constexpr double dragThreshold = 4; ///< points the pointer may tremble within a click
constexpr int wheelNotch = 120;     ///< Qt's eighths of a degree

} // namespace

SpriteView::SpriteView() {
    feedback_.onChange = [this] { redraw(); };
}

void SpriteView::attach(Platform::DesktopSurface& surface) {
    surface_ = &surface;
}

void SpriteView::setLayout(const FellowCore::ManifestCharacterLayout& layout) {
    if (layout == layout_) {
        return;
    }
    layout_ = layout;
    cache_.clear();
    updatePointerRegion();
    redraw();
}

void SpriteView::popupMenu(FellowCore::Point screen) const {
    std::unique_ptr<QMenu> made = menuProvider ? menuProvider() : nullptr;
    if (!made) {
        return;
    }
    QMenu* menu = made.release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(Platform::toQt(screen));
}

void SpriteView::pointerPressed(const Platform::PointerEvent& event) {
    if (event.button != Qt::LeftButton || !surface_) {
        return;
    }
    pressed_ = true;
    dragOrigin_ = event.screen;
    initialOrigin_ = surface_->frame().origin();
    surface_->raise();
    feedback_.press();
}

void SpriteView::pointerMoved(const Platform::PointerEvent& event) {
    if (!pressed_) {
        return;
    }
    const double dx = event.screen.x - dragOrigin_.x;
    const double dy = event.screen.y - dragOrigin_.y;
    if (!dragging_) {
        if (std::hypot(dx, dy) < dragThreshold) {
            return;
        }
        dragging_ = true;
        feedback_.reset();
        // A fast pointer leaves the art's outline for a moment; the drag must not end there.
        surface_->setInputWhole(true);
    }
    surface_->setFrame(surface_->frame().at({initialOrigin_.x + dx, initialOrigin_.y + dy}));
    if (onMoved) {
        onMoved(MovePhase::dragging);
    }
}

void SpriteView::pointerReleased(const Platform::PointerEvent& event) {
    if (event.button != Qt::LeftButton || !pressed_) {
        return;
    }
    pressed_ = false;
    feedback_.release();
    if (dragging_) {
        endDrag();
    } else if (onClick) {
        onClick();
    }
}

void SpriteView::pointerCancelled() {
    pressed_ = false;
    feedback_.reset();
    if (dragging_) {
        endDrag();
    }
}

void SpriteView::endDrag() {
    dragging_ = false;
    surface_->setInputWhole(false);
    if (onMoved) {
        onMoved(MovePhase::ended);
    }
}

void SpriteView::wheelTurned(const Platform::WheelEvent& event) {
    if (!event.modifiers.testFlag(Qt::ControlModifier)) {
        return;
    }
    wheelRest_ += event.angleDelta.y();
    const int notches = wheelRest_ / wheelNotch;
    wheelRest_ -= notches * wheelNotch;
    if (notches != 0 && onResize) {
        onResize(notches);
    }
}

void SpriteView::contextMenuRequested(FellowCore::Point screen) {
    popupMenu(screen);
}

void SpriteView::textDropped(const QString& text) {
    if (onDropText) {
        onDropText(text);
    }
}

void SpriteView::backingScaleChanged(double) {
    cache_.clear();
    if (onBackingChanged) {
        onBackingChanged();
    }
    updatePointerRegion();
    redraw();
}

void SpriteView::accessiblePress() {
    if (onClick) {
        onClick();
    }
}

void SpriteView::accessibleShowMenu() {
    if (surface_) {
        const FellowCore::Rect frame = surface_->frame();
        popupMenu({frame.x + layout_.visible.midX(), frame.y + layout_.visible.midY()});
    }
}

QRectF SpriteView::canvasRect() const {
    const double scale = surface_ ? surface_->backingScale() : 1;
    const QRectF rect(layout_.artwork.x, layout_.size.height - layout_.artwork.maxY(), layout_.artwork.width,
                      layout_.artwork.height);
    return PixelArtwork::aligned(rect, scale)
        .translated(0, std::round(feedback_.drop() * layout_.unit * scale) / scale);
}

void SpriteView::updatePointerRegion() {
    if (!surface_) {
        return;
    }
    const QRectF canvas = canvasRect();
    const double unit = layout_.unit;
    std::vector<QRectF> region = extraRegion();
    for (const FellowCore::AlphaRun& run : opaqueRuns()) {
        const double width = (run.x1 - run.x0) * unit;
        const double left = isMirrored() ? canvas.width() - run.x1 * unit : run.x0 * unit;
        region.emplace_back(canvas.x() + left, canvas.y() + run.y0 * unit, width, (run.y1 - run.y0) * unit);
    }
    surface_->setInputRegion(std::move(region));
}

void SpriteView::redraw() {
    if (surface_) {
        surface_->update();
    }
}

void SpriteView::drawCanvas(QPainter& painter, const QImage& art) const {
    const double scale = surface_ ? surface_->backingScale() : 1;
    const QRectF rect = canvasRect();
    const QSize device(static_cast<int>(std::lround(rect.width() * scale)),
                       static_cast<int>(std::lround(rect.height() * scale)));
    QImage picture = scaledArt(art, device, isMirrored());
    picture.setDevicePixelRatio(scale);
    painter.drawImage(rect.topLeft(), picture);
}

const QImage& SpriteView::scaledArt(const QImage& art, QSize device, bool mirrored) const {
    const auto found = std::ranges::find_if(cache_, [&](const Cached& entry) {
        return entry.key == art.cacheKey() && entry.mirrored == mirrored && entry.image.size() == device;
    });
    if (found != cache_.end()) {
        return found->image;
    }
    if (cache_.size() >= cachedPictures()) {
        cache_.erase(cache_.begin());
    }
    const QImage scaled = PixelArtwork::scaled(art, device);
    cache_.push_back({art.cacheKey(), mirrored, mirrored ? scaled.mirrored(true, false) : scaled});
    return cache_.back().image;
}

} // namespace DeskSprites
