#pragma once

#include <optional>

namespace Platform {

/// Brings the tab of Konsole in which `shell` is the first process to the front. `konsole` is the program's
/// own process. The number of the window that has the tab, when Konsole tells; nothing when it has no such
/// tab. Blocks on the session bus, a few seconds at most.
std::optional<unsigned long long> revealKonsoleTab(long konsole, long shell);

} // namespace Platform
