#include "platform/linux/X11Compositor.h"

#include <QTimer>

namespace Platform {

// Qt has asked the server (XFixes) to tell when the compositor's selection changes hands, on this same
// connection, so those events only need to be seen here.
X11Compositor::X11Compositor(const X11Display& display)
    : display_(display), selectionEvent_(display.firstEvent("XFIXES")),
      running_(display.hasOwner(X11Atom::compositor)), filter_([this](const xcb_generic_event_t& event) {
          if (selectionEvent_ != 0 && x11EventNumber(event) == selectionEvent_)
              QTimer::singleShot(0, this, &X11Compositor::look);
      }) {}

void X11Compositor::look() {
    const bool running = display_.hasOwner(X11Atom::compositor);
    if (running == running_)
        return;
    running_ = running;
    Q_EMIT changed();
}

} // namespace Platform
