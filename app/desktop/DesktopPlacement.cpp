#include "app/desktop/DesktopPlacement.h"

#include "core/art/DesktopLayout.h"
#include "core/art/DesktopNeighbours.h"
#include "core/art/DesktopSize.h"
#include "core/host/PreferenceKeys.h"

#include <algorithm>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
namespace DesktopSize = FellowCore::DesktopSize;
using FellowCore::Point;
using FellowCore::Sizing;

namespace {

constexpr FellowCore::Seconds anchorSaveSpacing = 1.0;

} // namespace

DesktopPlacement::DesktopPlacement(CharacterStage& stage, DesktopServices& services)
    : stage_(stage), services_(services) {}

double DesktopPlacement::desktopHeight(const DesktopCharacter& character) const {
    const auto saved = services_.preferences.number(Keys::desktopHeight(character.identifier()));
    return DesktopSize::clamped(saved.value_or(DesktopSize::standardHeight));
}

void DesktopPlacement::initializeSize(DesktopCharacter& character) {
    auto& preferences = services_.preferences;
    const std::string own = Keys::desktopHeight(character.identifier());
    const auto shared = preferences.number(Keys::sharedDesktopHeight);
    if (!preferences.number(own) && shared) {
        preferences.setNumber(own, DesktopSize::normalized(*shared));
    }
    applyDesktopHeight(character);
}

void DesktopPlacement::applyDesktopHeight(DesktopCharacter& character) {
    const auto& preferences = services_.preferences;
    const auto arranged = preferences.number(Keys::arrangeHeight(character.identifier()));
    const auto compact = preferences.number(Keys::arrangeCompactHeight);
    const double height = arranged ? *arranged : compact ? *compact : desktopHeight(character);
    character.setVisibleHeight(DesktopSize::clamped(height), Sizing::snapped);
}

void DesktopPlacement::setDesktopHeight(DesktopCharacter& character, double height) {
    if (isCompact()) {
        restoreNormalSizes();
    } else {
        services_.preferences.remove(Keys::arrangeHeight(character.identifier()));
    }
    services_.preferences.setNumber(Keys::desktopHeight(character.identifier()),
                                    DesktopSize::clamped(height));
    applyDesktopHeight(character);
    recordDesktopAnchor(character, FrameSave::forced);
    character.saveFrame(FrameSave::forced);
}

void DesktopPlacement::stepSize(DesktopCharacter& character, int steps) {
    setDesktopHeight(character, character.steppedHeight(steps));
}

bool DesktopPlacement::isCompact() const {
    return services_.preferences.number(Keys::arrangeCompactHeight).has_value();
}

void DesktopPlacement::clearArrangedSizes() {
    services_.preferences.remove(Keys::arrangeCompactHeight);
    for (const auto& character : stage_.all()) {
        services_.preferences.remove(Keys::arrangeHeight(character->identifier()));
    }
}

void DesktopPlacement::restoreNormalSizes() {
    clearArrangedSizes();
    for (DesktopCharacter* character : stage_.onScreen()) {
        applyDesktopHeight(*character);
    }
}

std::optional<Point> DesktopPlacement::savedAnchor(const DesktopCharacter& character) const {
    const auto text = services_.preferences.string(Keys::desktopAnchor(character.identifier()));
    return text ? FellowCore::pointFromText(*text) : std::nullopt;
}

std::optional<Point> DesktopPlacement::legacyAnchor() const {
    const auto text = services_.preferences.string(Keys::sharedDesktopAnchor);
    return text ? FellowCore::pointFromText(*text) : std::nullopt;
}

void DesktopPlacement::recordDesktopAnchor(const DesktopCharacter& character, FrameSave when) {
    const FellowCore::MonotonicInstant now = services_.system.clock().monotonic();
    if (when == FrameSave::throttled && lastAnchorSave_ && now - *lastAnchorSave_ < anchorSaveSpacing) {
        return;
    }
    lastAnchorSave_ = now;
    const std::string anchor = FellowCore::pointText(character.anchor());
    services_.preferences.setString(Keys::desktopAnchor(character.identifier()), anchor);
    services_.preferences.setString(Keys::sharedDesktopAnchor, anchor);
}

void DesktopPlacement::placeBeside(DesktopCharacter& newcomer, const DesktopCharacter& beside) {
    initializeSize(newcomer);
    const auto screen = beside.screen();
    if (!screen) {
        return;
    }
    const FellowCore::Rect& visible = screen->visibleFrame;
    const FellowCore::Size size = newcomer.geometry().frame.size();
    const double scale = std::min(visible.width / size.width, visible.height / size.height);
    if (scale < 1) {
        const double room = size.height * scale - 2 * DesktopSize::windowPadding;
        // Snapping to the nearest crisp height could take it off the screen again.
        setDesktopHeight(newcomer, newcomer.crispVisibleHeightAtMost(room));
    }
    const FellowCore::Rect frame =
        FellowCore::DesktopNeighbours::frame(newcomer.geometry().frame.size(), beside.geometry().frame,
                                             visible, FellowCore::DesktopNeighbours::standardGap);
    // Both windows have a rim of their own; what must agree is the line on which the feet stand.
    const Point foot = FellowCore::DesktopLayout::anchor(frame, newcomer.geometry().foot);
    newcomer.place({foot.x, beside.anchor().y});
}

} // namespace DeskSprites
