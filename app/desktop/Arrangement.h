#pragma once

#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopPlacement.h"
#include "core/art/ArrangeLayout.h"

#include <QTimer>

#include <functional>
#include <vector>

namespace DeskSprites {

/// What an arrangement does about the one compact height.
enum class CompactChange { keep, turnOn, turnOff };

/// Lines the characters up along an edge of the screen and moves them there.
class Arrangement {
public:
    /// Runs at the end of an arrangement, whether its animation ran out or was cut short.
    std::function<void()> arrangementCompletion;

    Arrangement(CharacterStage& stage, DesktopPlacement& placement, DesktopServices& services);

    void arrange(FellowCore::ArrangeLayout::Edge edge, CompactChange compact);
    /// Puts everyone where the arrangement leads, at once; nothing when none is under way.
    void finishArrangement();
    bool isUnderWay() const { return timer_.isActive(); }
    /// The edge chosen last; the right one before any was.
    FellowCore::ArrangeLayout::Edge edge() const;

private:
    struct Move {
        DesktopCharacter* character;
        FellowCore::Point from;
        FellowCore::Point to;
    };

    void fitSizes(const std::vector<DesktopCharacter*>& standing, FellowCore::ArrangeLayout::Edge edge,
                  CompactChange compact, const FellowCore::Rect& visible);
    void step();
    void complete();

    CharacterStage& stage_;
    DesktopPlacement& placement_;
    DesktopServices& services_;
    std::vector<Move> moves_;
    FellowCore::MonotonicInstant start_;
    QTimer timer_;
};

} // namespace DeskSprites
