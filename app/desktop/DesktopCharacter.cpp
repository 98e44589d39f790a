#include "app/desktop/DesktopCharacter.h"

#include "app/desktop/PixelArtwork.h"
#include "core/art/ArtPixelGrid.h"
#include "core/art/DesktopLayout.h"
#include "core/art/DesktopSize.h"
#include "core/host/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace DeskSprites {

using FellowCore::ManifestCharacterLayout;
using FellowCore::Point;
using FellowCore::Rect;
using FellowCore::Sizing;
using FellowCore::DesktopSize::clamped;
using Platform::ScreenInfo;

namespace {

constexpr double firstInsetFromRight = 45; ///< where a character stands before it was ever placed
constexpr double firstInsetFromBottom = 32;
constexpr FellowCore::Seconds frameSaveSpacing = 1.0;
constexpr double nearly = 1e-6; ///< what a division of whole numbers may be off by

/// `visible` widened by the transparent rim of the window, so that keeping the window inside it keeps the art
/// inside `visible`.
Rect roomForWindow(const Rect& visible, FellowCore::Size window, const Rect& art) {
    return {visible.x - art.minX(), visible.y - art.minY(), visible.width + window.width - art.width,
            visible.height + window.height - art.height};
}

/// Window systems count in 16 bits; what lies beyond was never a place of a window.
bool isOnSomeDesktop(Point point) {
    return std::abs(point.x) < 32768 && std::abs(point.y) < 32768;
}

} // namespace

DesktopCharacter::DesktopCharacter(Companion companion, DesktopServices& services)
    : companion_(std::move(companion)), services_(services) {}

DesktopCharacter::~DesktopCharacter() = default;

void DesktopCharacter::attachView(SpriteView& view) {
    view_ = &view;
    surface_ = services_.system.makeSurface(view);
    view.attach(*surface_);
    surface_->setAccessible(name(), {}, QString::fromStdString(companion_.manifest.role));
    connectView();
}

void DesktopCharacter::connectView() {
    view_->onClick = [this] {
        if (onClick) {
            onClick();
        }
    };
    view_->onMoved = [this](MovePhase phase) {
        frameChanged();
        saveFrame(phase == MovePhase::ended ? FrameSave::forced : FrameSave::throttled);
        if (onMoved) {
            onMoved(phase);
        }
    };
    view_->onResize = [this](int notches) {
        if (onResize) {
            onResize(notches);
        }
    };
    view_->menuProvider = [this] { return menuProvider ? menuProvider() : nullptr; };
    view_->onBackingChanged = [this] { applyLayout(sizing_); };
}

QImage DesktopCharacter::portrait() const {
    return PixelArtwork::image(*art().images().at("idle"));
}

CharacterGeometry DesktopCharacter::geometry() const {
    const Rect frame = surface_->frame();
    const ManifestCharacterLayout& layout = view_->layout();
    return {frame, layout.visible.translated(frame.x, frame.y), layout.anchorRect(),
            frame.y + faceHeight(layout)};
}

std::vector<Rect> DesktopCharacter::obstacles() const {
    if (!shown_) {
        return {};
    }
    std::vector<Rect> all = attachments();
    all.push_back(geometry().artwork);
    return all;
}

std::optional<ScreenInfo> DesktopCharacter::screen() const {
    const std::vector<ScreenInfo> screens = services_.system.screens().all();
    if (screens.empty()) {
        return std::nullopt;
    }
    const Rect frame = surface_->frame();
    const auto most = std::ranges::max_element(
        screens, {}, [&frame](const ScreenInfo& info) { return info.visibleFrame.sharedArea(frame); });
    return *most; // the main screen comes first, so it wins when none shares anything
}

std::optional<ScreenInfo> DesktopCharacter::screenAt(Point point) const {
    const std::vector<ScreenInfo> screens = services_.system.screens().all();
    if (screens.empty()) {
        return std::nullopt;
    }
    const auto found =
        std::ranges::find_if(screens, [point](const ScreenInfo& info) { return info.frame.contains(point); });
    return found == screens.end() ? screens.front() : *found;
}

ManifestCharacterLayout DesktopCharacter::layoutAt(double height, Sizing sizing) const {
    return adjusted(art().layout(height, surface_->backingScale(), sizing));
}

double DesktopCharacter::crispVisibleHeight(double height) const {
    const auto& grid = art().manifest().grid;
    const FellowCore::ArtPixelGrid pixels(
        FellowCore::Size{static_cast<double>(grid.width), static_cast<double>(grid.height)});
    return pixels.snappedVisibleHeight(height, art().scaleReferenceHeight() / grid.height,
                                       surface_->backingScale());
}

double DesktopCharacter::crispVisibleHeightAtMost(double height) const {
    const double perStep = art().scaleReferenceHeight() / surface_->backingScale();
    return std::max(std::floor(height / perStep + nearly) * perStep, FellowCore::DesktopSize::smallestHeight);
}

double DesktopCharacter::steppedHeight(int steps) const {
    const double perStep = art().scaleReferenceHeight() / surface_->backingScale();
    const double now = visibleHeight_ / perStep;
    const double base = steps > 0 ? std::floor(now + nearly) : std::ceil(now - nearly);
    return clamped((base + steps) * perStep);
}

void DesktopCharacter::setVisibleHeight(double height, Sizing sizing) {
    visibleHeight_ = sizing == Sizing::snapped ? crispVisibleHeight(height) : height;
    sizing_ = sizing;
    applyLayout(sizing);
}

void DesktopCharacter::applyLayout(Sizing sizing) {
    const bool hadPlace = !surface_->frame().isEmpty();
    const Point foot = hadPlace ? exactAnchor() : Point{};
    const ManifestCharacterLayout layout = layoutAt(visibleHeight_, sizing);
    view_->setLayout(layout);
    Rect frame{surface_->frame().x, surface_->frame().y, layout.size.width, layout.size.height};
    if (hadPlace) {
        const Rect art = layout.anchorRect();
        frame = frame.at({foot.x - art.midX(), foot.y - art.minY()});
    }
    moveWindow(frame);
    resizeFoot_ = hadPlace ? foot : anchor();
    resizedFrame_ = surface_->frame();
}

Point DesktopCharacter::exactAnchor() const {
    // A row of resizes must not carry the foot away by half a point each.
    return surface_->frame() == resizedFrame_ ? resizeFoot_ : anchor();
}

void DesktopCharacter::place(Point foot) {
    if (const auto info = screenAt(foot)) {
        const ManifestCharacterLayout& layout = view_->layout();
        const Rect room = roomForWindow(info->visibleFrame, layout.size, layout.anchorRect());
        moveWindow(FellowCore::DesktopLayout::frame(layout.size, layout.anchorRect(), foot, room));
    }
}

void DesktopCharacter::moveWindow(const Rect& frame) {
    surface_->setFrame(frame);
    frameChanged();
}

Point DesktopCharacter::anchor() const {
    return FellowCore::DesktopLayout::anchor(surface_->frame(), view_->layout().anchorRect());
}

void DesktopCharacter::clampFrame() {
    if (const auto info = screen()) {
        const ManifestCharacterLayout& layout = view_->layout();
        const Rect room = roomForWindow(info->visibleFrame, layout.size, layout.anchorRect());
        moveWindow(FellowCore::DesktopLayout::frame(layout.size, layout.anchorRect(), anchor(), room));
    }
}

void DesktopCharacter::saveFrame(FrameSave when) {
    const FellowCore::MonotonicInstant now = services_.system.clock().monotonic();
    if (when == FrameSave::throttled && lastFrameSave_ && now - *lastFrameSave_ <= frameSaveSpacing) {
        return;
    }
    lastFrameSave_ = now;
    services_.preferences.setString(FellowCore::PreferenceKeys::frame(identifier()),
                                    FellowCore::rectText(surface_->frame()));
}

void DesktopCharacter::restoreSizeAndFrame() {
    const auto& preferences = services_.preferences;
    const auto height = preferences.number(FellowCore::PreferenceKeys::desktopHeight(identifier()));
    setVisibleHeight(clamped(height.value_or(FellowCore::DesktopSize::standardHeight)), Sizing::snapped);

    const Rect own = surface_->frame();
    const auto text = preferences.string(FellowCore::PreferenceKeys::frame(identifier()));
    const auto saved = text ? FellowCore::rectFromText(*text) : std::nullopt;
    if (saved && saved->width > 0 && saved->height > 0 && isOnSomeDesktop(saved->origin())) {
        moveWindow(own.at(saved->origin()));
        return;
    }
    const std::vector<ScreenInfo> screens = services_.system.screens().all();
    if (!screens.empty()) {
        const Rect& visible = screens.front().visibleFrame;
        moveWindow(own.at(
            {visible.maxX() - firstInsetFromRight - own.width, visible.minY() + firstInsetFromBottom}));
    }
}

void DesktopCharacter::showWindow() {
    shown_ = true;
    clampFrame();
    surface_->show();
}

void DesktopCharacter::setCovered(bool covered) {
    if (std::exchange(covered_, covered) == covered || !shown_) {
        return;
    }
    if (covered) {
        view_->feedback().reset();
        surface_->hide();
    } else {
        surface_->show();
    }
}

void DesktopCharacter::hideWindow() {
    saveFrame(FrameSave::forced);
    shown_ = false;
    covered_ = false; // whoever comes out anew is meant to be seen
    view_->feedback().reset();
    surface_->hide();
}

void DesktopCharacter::presentationChanged() {
    const CharacterPresentation now = presentation();
    surface_->setAccessible(name(), now.spoken, QString::fromStdString(companion_.manifest.role));
    if (onChange) {
        onChange();
    }
}

bool DesktopCharacter::reducesMotion() const {
    return services_.system.motion().isReduced();
}

} // namespace DeskSprites
