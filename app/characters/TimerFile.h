#pragma once

#include "app/desktop/DesktopServices.h"
#include "core/art/CharacterManifest.h"
#include "core/focus/FocusTimerStore.h"

#include <optional>
#include <string>

namespace DeskSprites {

/// Which rules a saved timer follows when it comes back.
enum class TimerRules {
    plain, ///< a running phase goes on
    batti, ///< a running phase comes back paused
};

/// One character's timer on disk as its controller uses it: loaded once, saved in the background, and never
/// at the cost of a file that this program could not read.
class TimerFile {
public:
    /// Makes the character's folder. Without it nothing is loaded or saved.
    TimerFile(const FellowCore::CharacterManifest& manifest, DesktopServices& services);

    /// The saved timer, or nothing when there is none. A file that cannot be understood is moved aside, one
    /// that cannot be read is left alone and not written either.
    std::optional<FellowCore::FocusTimer> load(TimerRules rules, FellowCore::Instant at);
    void save(const FellowCore::FocusTimer& timer);

private:
    void setAside(const std::string& reason);

    DesktopServices& services_;
    std::string name_; ///< of the character, for the log
    std::optional<FellowCore::FocusTimerStore> store_;
};

} // namespace DeskSprites
