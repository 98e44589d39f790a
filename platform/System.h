#pragma once

#include "platform/ApplicationWindows.h"
#include "platform/Clock.h"
#include "platform/DesktopSurface.h"
#include "platform/FrontmostApplication.h"
#include "platform/GlobalShortcuts.h"
#include "platform/PointerPresses.h"
#include "platform/ReducedMotion.h"
#include "platform/Screens.h"
#include "platform/SessionEvents.h"
#include "platform/Tray.h"

#include <memory>

namespace Platform {

/// What the operating system gives, as one object that `main` makes after the application object and destroys
/// before it. A service is made when it is first asked for and lives as long as this; what nobody asks for
/// costs nothing. Main thread only.
class System {
public:
    virtual ~System() = default;

    virtual Clock& clock() = 0;
    virtual Screens& screens() = 0;
    virtual SessionEvents& session() = 0;
    virtual ReducedMotion& motion() = 0;
    virtual GlobalShortcuts& shortcuts() = 0;
    virtual FrontmostApplication& frontmost() = 0;
    virtual ApplicationWindows& windows() = 0;
    virtual Tray& tray() = 0;
    virtual PointerPresses& presses() = 0;

    /// A new surface. The client must outlive it; the surface must not outlive this object.
    virtual std::unique_ptr<DesktopSurface> makeSurface(DesktopSurfaceClient& client) = 0;

    /// Whether windows can be translucent now; without a compositor characters have hard edges.
    virtual bool hasCompositor() const = 0;
    /// Whether a window manager runs now; without one bubbles stack and take the keyboard as they happen to.
    virtual bool hasWindowManager() const = 0;
};

/// The services of the system this program was built for.
std::unique_ptr<System> makeSystem();

} // namespace Platform
