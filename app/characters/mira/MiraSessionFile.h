#pragma once

#include "app/desktop/DesktopServices.h"
#include "core/breathing/BreathingSessionStore.h"

#include <optional>
#include <string>

namespace DeskSprites {

/// Mira's session on disk as her controller uses it: loaded once, saved in the background, and never at the
/// cost of a file that this program could not read.
class MiraSessionFile {
public:
    explicit MiraSessionFile(DesktopServices& services);

    /// The saved session, which never runs, or nothing when there is none. A file that cannot be understood
    /// is moved aside, one that cannot be read is left alone and not written either.
    std::optional<FellowCore::BreathingSession> load();
    /// Saves the session as if it were paused at that instant.
    void save(const FellowCore::BreathingSession& session, FellowCore::Instant at);

private:
    void setAside(const std::string& reason);

    DesktopServices& services_;
    std::optional<FellowCore::BreathingSessionStore> store_; ///< nothing when the file must be left alone
};

} // namespace DeskSprites
