#pragma once

#include "core/base/Geometry.h"

#include <functional>

namespace Platform {

/// Presses of a mouse button anywhere on the desktop, in whatever window, for a panel that closes when the
/// user turns to something else. The presses themselves go where they always go.
class PointerPresses {
public:
    virtual ~PointerPresses() = default;

    /// Calls `handler` on the main loop with the place of each press (screen coordinates), until an empty one
    /// is set. Nothing is watched while no handler is set.
    virtual void setOnPress(std::function<void(FellowCore::Point)> handler) = 0;
};

} // namespace Platform
