#pragma once

#include "app/desktop/DesktopPlacement.h"
#include "core/art/DesktopSizePreview.h"
#include "core/art/DesktopSizeTransition.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace DeskSprites {

/// A height being chosen with a slider: the character follows smoothly while it is held and settles on a
/// crisp height when it is let go.
class SizeSlider {
public:
    /// The height was committed.
    std::function<void()> onFinished;

    SizeSlider(DesktopPlacement& placement, DesktopServices& services);

    /// Another character's preview that is under way is committed first.
    void begin(DesktopCharacter& character);
    void request(double height);
    /// Commits what was asked for; nothing when no preview is under way.
    void finishSizePreview();
    bool isEditing() const { return preview_.isEditing; }

private:
    void step();

    DesktopPlacement& placement_;
    DesktopServices& services_;
    DesktopCharacter* character_ = nullptr;
    FellowCore::DesktopSizePreview preview_;
    FellowCore::DesktopSizeTransition way_;
    std::optional<double> target_;
    FellowCore::MonotonicInstant wayStart_;
    QTimer timer_; ///< runs only while the character is on its way to a height
};

} // namespace DeskSprites
