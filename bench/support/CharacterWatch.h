#pragma once

#include "bench/support/RunningProgram.h"

#include <xcb/xcb.h>

#include <memory>
#include <vector>

namespace Bench {

/// When a character came on the screen, as another program on the display sees it.
struct Appearance {
    Time mapped; ///< the server told that the window shows
    Time drawn;  ///< its picture had been seen to hold art: transparent pixels as well as opaque ones
};

/// Looks at the X server for the windows of characters: those that no window manager places and that have
/// alpha.
class CharacterWatch {
public:
    CharacterWatch();
    ~CharacterWatch();
    CharacterWatch(const CharacterWatch&) = delete;
    CharacterWatch& operator=(const CharacterWatch&) = delete;

    /// Waits until so many characters that were not there before have been drawn, and returns them in the
    /// order of being drawn. Throws when that takes longer than ten seconds. Once a window shows it is looked
    /// at every 0.2 ms, a row and a column of it, so the answer is late by at most that and a request.
    std::vector<Appearance> wait(std::size_t count);

private:
    struct Pending {
        xcb_window_t window;
        Time mapped;
    };

    void readEvents();
    bool isCharacter(xcb_window_t window) const;
    bool isDrawn(xcb_window_t window) const;

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    std::vector<Pending> pending_;
};

} // namespace Bench
