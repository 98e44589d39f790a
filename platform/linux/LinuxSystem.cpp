#include "platform/System.h"

#include "platform/linux/Buses.h"
#include "platform/linux/LinuxTray.h"
#include "platform/linux/LogindSessionEvents.h"
#include "platform/linux/PortalReducedMotion.h"
#include "platform/linux/X11ApplicationWindows.h"
#include "platform/linux/X11Compositor.h"
#include "platform/linux/X11DesktopSurface.h"
#include "platform/linux/X11FrontmostApplication.h"
#include "platform/linux/X11GlobalShortcuts.h"
#include "platform/linux/X11PointerPresses.h"
#include "platform/linux/X11Screens.h"

#include <QTimer>

namespace Platform {
namespace {

/// Makes a service the first time it is asked for.
template <typename Service, typename... Arguments>
Service& made(std::unique_ptr<Service>& service, Arguments&&... arguments) {
    if (!service)
        service = std::make_unique<Service>(std::forward<Arguments>(arguments)...);
    return *service;
}

class LinuxSystem final : public System {
public:
    Clock& clock() override { return clock_; }
    Screens& screens() override { return made(screens_, display_); }
    GlobalShortcuts& shortcuts() override { return made(shortcuts_, display_); }
    FrontmostApplication& frontmost() override { return made(frontmost_, display_); }
    ApplicationWindows& windows() override { return made(windows_, display_); }
    Tray& tray() override { return made(tray_, display_); }
    PointerPresses& presses() override { return made(presses_, display_); }

    SessionEvents& session() override {
        if (!session_) {
            // Joining a bus waits for its daemon, so it comes after the first picture.
            QTimer::singleShot(0, &made(session_),
                               [this] { session_->start(systemBusIfAny(), sessionBusIfAny()); });
        }
        return *session_;
    }

    ReducedMotion& motion() override {
        if (!motion_)
            QTimer::singleShot(0, &made(motion_), [this] { motion_->start(sessionBusIfAny()); });
        return *motion_;
    }

    std::unique_ptr<DesktopSurface> makeSurface(DesktopSurfaceClient& client) override {
        return std::make_unique<X11DesktopSurface>(display_, made(compositor_, display_), client);
    }

    bool hasCompositor() const override { return display_.hasOwner(X11Atom::compositor); }
    bool hasWindowManager() const override { return display_.hasWindowManager(); }

private:
    SystemClock clock_;
    X11Display display_;
    std::unique_ptr<X11Compositor> compositor_;
    std::unique_ptr<X11Screens> screens_;
    std::unique_ptr<LogindSessionEvents> session_;
    std::unique_ptr<PortalReducedMotion> motion_;
    std::unique_ptr<X11GlobalShortcuts> shortcuts_;
    std::unique_ptr<X11FrontmostApplication> frontmost_;
    std::unique_ptr<X11ApplicationWindows> windows_;
    std::unique_ptr<LinuxTray> tray_;
    std::unique_ptr<X11PointerPresses> presses_;
};

} // namespace

std::unique_ptr<System> makeSystem() {
    return std::make_unique<LinuxSystem>();
}

} // namespace Platform
