#pragma once

#include "core/host/CharacterRuntime.h"
#include "core/host/OnScreenSet.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Keeps which characters stand on the desktop and drives their runtimes. A refusal is false and changes
/// nothing. Main thread only.
class CharacterHost {
public:
    /// By identifier. The owner of the host owns the runtimes too and keeps them alive as long as the host.
    using Runtimes = std::map<std::string, CharacterRuntime*, std::less<>>;

    CharacterHost(Runtimes runtimes, std::set<std::string> unlocked);

    const Runtimes& runtimes() const { return runtimes_; }
    const std::set<std::string>& unlocked() const { return unlocked_; }
    const std::optional<std::string>& activeID() const { return activeID_; }
    bool isVisible() const { return visible_; }
    const OnScreenSet& onScreen() const { return onScreen_; }

    /// The identifiers that are unlocked and have a runtime.
    std::set<std::string> available() const;
    bool isAvailable(std::string_view id) const;

    /// Makes a character on screen the active one; false when it is not on screen.
    bool focus(std::string_view id);
    /// Brings a character onto the screen and makes it active.
    bool add(std::string_view id);
    /// Takes a character off the screen. When it was the active one, the last that remains becomes active.
    bool remove(std::string_view id);
    /// Puts an available character in the place of another and makes it active.
    bool swap(std::string_view id, std::string_view replacement);
    /// Focuses a character that is on screen, or else swaps it with the active one, or else adds it; and
    /// shows the whole set if it was hidden.
    bool select(std::string_view id);

    /// Shows or hides the whole set; nothing when it is empty.
    void setVisible(bool visible);
    /// Replaces the set by those of `set` that are available and shows it; `focused` becomes active if it is
    /// there, else the last.
    void restore(const OnScreenSet& set, const std::optional<std::string>& focused);
    /// Hides everything; the set stays.
    void shutdown();
    /// Takes characters that are no longer unlocked off the screen. None comes back on a later unlock.
    void updateUnlocked(std::set<std::string> unlocked);

private:
    void show(std::string_view id);
    void hide(std::string_view id);
    void activateLast();

    Runtimes runtimes_;
    std::set<std::string> unlocked_;
    std::optional<std::string> activeID_;
    bool visible_ = false;
    OnScreenSet onScreen_;
};

} // namespace FellowCore
