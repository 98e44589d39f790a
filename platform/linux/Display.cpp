#include "platform/Display.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace Platform {

DisplayState displayState() {
    const char* name = std::getenv("DISPLAY");
    if (!name || !*name)
        return DisplayState::notSet;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool failed = xcb_connection_has_error(connection) != 0;
    xcb_disconnect(connection);
    return failed ? DisplayState::unreachable : DisplayState::reachable;
}

} // namespace Platform
