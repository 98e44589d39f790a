#include "app/desktop/Arrangement.h"

#include "core/host/PreferenceKeys.h"

namespace DeskSprites {

namespace ArrangeLayout = FellowCore::ArrangeLayout;
namespace Keys = FellowCore::PreferenceKeys;
using FellowCore::Rect;

Arrangement::Arrangement(CharacterStage& stage, DesktopPlacement& placement, DesktopServices& services)
    : stage_(stage), placement_(placement), services_(services) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(static_cast<int>(ArrangeLayout::animationStep * 1000));
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { step(); });
}

ArrangeLayout::Edge Arrangement::edge() const {
    const auto saved = services_.preferences.string(Keys::arrangeEdge);
    return (saved ? ArrangeLayout::edgeFromRawValue(*saved) : std::nullopt)
        .value_or(ArrangeLayout::Edge::right);
}

void Arrangement::arrange(ArrangeLayout::Edge edge, CompactChange compact) {
    finishArrangement();
    const std::vector<DesktopCharacter*> standing = stage_.onScreen();
    const auto screen = stage_.active() ? stage_.active()->screen() : std::nullopt;
    if (standing.empty() || !screen) {
        return;
    }
    services_.preferences.setString(Keys::arrangeEdge, ArrangeLayout::rawValue(edge));
    fitSizes(standing, edge, compact, screen->visibleFrame);

    std::vector<FellowCore::Size> sizes;
    for (const DesktopCharacter* character : standing) {
        sizes.push_back(character->geometry().frame.size());
    }
    const std::vector<Rect> frames = ArrangeLayout::frames(sizes, edge, screen->visibleFrame);
    moves_.clear();
    for (std::size_t i = 0; i < standing.size(); ++i) {
        moves_.push_back({standing[i], standing[i]->geometry().frame.origin(), frames[i].origin()});
    }
    if (services_.system.motion().isReduced() || !stage_.host().isVisible()) {
        complete();
        return;
    }
    start_ = services_.system.clock().monotonic();
    timer_.start();
}

void Arrangement::fitSizes(const std::vector<DesktopCharacter*>& standing, ArrangeLayout::Edge edge,
                           CompactChange compact, const Rect& visible) {
    if (compact == CompactChange::turnOff) {
        placement_.restoreNormalSizes();
    }
    std::vector<ArrangeLayout::Metrics> metrics;
    for (const DesktopCharacter* character : standing) {
        const double height = placement_.desktopHeight(*character);
        metrics.emplace_back(height, character->layoutAt(height, FellowCore::Sizing::snapped).size);
    }
    const bool isCompact = compact == CompactChange::turnOn || placement_.isCompact();
    if (isCompact) {
        const double height = ArrangeLayout::compactHeight(metrics, visible);
        services_.preferences.setNumber(Keys::arrangeCompactHeight, height);
        for (ArrangeLayout::Metrics& one : metrics) {
            one.height = height;
        }
    }
    const std::vector<double> heights = ArrangeLayout::fittedHeights(metrics, edge, visible);
    for (std::size_t i = 0; i < standing.size(); ++i) {
        // Snapping to the nearest crisp height could push the row off the screen; the next smaller one
        // cannot.
        const double height = standing[i]->crispVisibleHeightAtMost(heights[i]);
        services_.preferences.setNumber(Keys::arrangeHeight(standing[i]->identifier()), height);
        placement_.applyDesktopHeight(*standing[i]);
    }
}

void Arrangement::step() {
    const FellowCore::Seconds elapsed = services_.system.clock().monotonic() - start_;
    if (elapsed >= ArrangeLayout::animationDuration) {
        finishArrangement();
        return;
    }
    const double share = ArrangeLayout::progress(elapsed, ArrangeLayout::animationDuration);
    for (const Move& move : moves_) {
        const Rect frame = move.character->geometry().frame;
        move.character->moveWindow(frame.at({move.from.x + (move.to.x - move.from.x) * share,
                                             move.from.y + (move.to.y - move.from.y) * share}));
    }
}

void Arrangement::finishArrangement() {
    if (timer_.isActive()) {
        complete();
    }
}

void Arrangement::complete() {
    timer_.stop();
    for (const Move& move : moves_) {
        move.character->moveWindow(move.character->geometry().frame.at(move.to));
        placement_.recordDesktopAnchor(*move.character, FrameSave::forced);
        move.character->saveFrame(FrameSave::forced);
    }
    moves_.clear();
    if (arrangementCompletion) {
        arrangementCompletion();
    }
}

} // namespace DeskSprites
