#pragma once

#include <optional>

namespace FellowCore {

/// What the size slider wants while it is dragged. Requests come as often as the pointer moves; the preview's
/// clock takes the latest one at each step, so none piles up. Heights are in points.
struct DesktopSizePreview {
    bool isEditing = false;
    std::optional<double> pendingHeight;   ///< asked for, not yet taken
    std::optional<double> displayedHeight; ///< what stands on the desktop now
    std::optional<double> releaseHeight;   ///< where the slider was let go

    void begin();
    /// Refused unless editing. Clamped to 140...600; not finite counts as 320.
    void request(double height);
    /// The pending height, which is pending no longer.
    std::optional<double> takePending();
    void display(double height);
    void end();
    void settle(double to);
    /// The height to keep: the released one, else the pending one, else the displayed one. Everything is
    /// cleared.
    std::optional<double> finish();
};

} // namespace FellowCore
