#pragma once

#include "core/base/Geometry.h"

#include <functional>
#include <string>
#include <vector>

namespace Platform {

/// One monitor. Rectangles are in screen coordinates: points, y up.
struct ScreenInfo {
    std::string name;              ///< the output's name; stable while it stays connected
    FellowCore::Rect frame;        ///< all of it
    FellowCore::Rect visibleFrame; ///< what panels and docks leave free; never empty, never outside `frame`
    double backingScale = 1;       ///< pixels in a point
    bool isMain = false;           ///< exactly one screen is the main one

    friend bool operator==(const ScreenInfo&, const ScreenInfo&) = default;
};

/// The monitors of the desktop.
class Screens {
public:
    virtual ~Screens() = default;

    /// Every screen, the main one first. Empty only while no monitor is connected.
    virtual std::vector<ScreenInfo> all() const = 0;

    /// Called on the main loop after the answer of `all` has become another: once for a burst of changes, and
    /// never when nothing has changed in the end.
    std::function<void()> onChange;
};

} // namespace Platform
