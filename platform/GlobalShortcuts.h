#pragma once

#include "platform/KeyCombination.h"

#include <functional>
#include <string>

namespace Platform {

enum class ShortcutResult {
    registered,
    taken,       ///< another program has it
    unsupported, ///< the keyboard has no such key, or the desktop gives programs no shortcuts
    invalid,     ///< no key, or no modifier with it
};

/// Key combinations that reach the program whatever has the keyboard. They are released with this object.
class GlobalShortcuts {
public:
    virtual ~GlobalShortcuts() = default;

    /// Asks for a combination under a name of the caller's choice. An earlier combination of that name is
    /// released only when the new one was registered.
    virtual ShortcutResult grab(const std::string& name, KeyCombination combination) = 0;
    /// Gives the combination of that name back; a name without one is fine.
    virtual void release(const std::string& name) = 0;

    /// Called on the main loop, once for each press; a held key does not repeat.
    std::function<void(const std::string& name)> onPressed;
};

} // namespace Platform
