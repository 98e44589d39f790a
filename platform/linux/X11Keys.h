#pragma once

#include "platform/linux/X11Display.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Platform {

/// The keysym (X Protocol, appendix A) of a `Qt::Key`; nothing for keys that have none of their own.
std::optional<std::uint32_t> keysymOf(int qtKey);

/// Which modifier bits mean what on this keyboard, read from the server's modifier map.
struct X11Modifiers {
    std::uint16_t alt = 0;
    std::uint16_t meta = 0; ///< the Super key
    std::uint16_t numLock = 0;
    std::uint16_t scrollLock = 0;

    static X11Modifiers read(const X11Display& display);

    /// The bits for `Qt::KeyboardModifiers`; nothing when the keyboard lacks one of them.
    std::optional<std::uint16_t> mask(int qtModifiers) const;
    /// Every combination of the locks (Caps, Num, Scroll), the empty one first: each must be grabbed on its
    /// own.
    std::vector<std::uint16_t> lockCombinations() const;
    /// `state` of a key event without locks, buttons and the keyboard group.
    std::uint16_t withoutLocks(std::uint16_t state) const;
};

/// The keys that make a keysym, in any group or level.
std::vector<xcb_keycode_t> keycodesOf(const X11Display& display, std::uint32_t keysym);

} // namespace Platform
