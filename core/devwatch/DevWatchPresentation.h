#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchActivityTracker.h"
#include "core/devwatch/DevWatchKind.h"
#include "core/devwatch/DevWatchRelaunch.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"
#include "core/devwatch/DevWatchTerminator.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// Whether the list of processes can be believed.
enum class DevWatchProcessListState { reading, available, unavailable };

/// What stands where the list would be when it has no rows.
std::string_view emptyTitle(DevWatchProcessListState state);

/// The dev watch's small texts.
namespace DevWatchPresentation {

inline constexpr std::string_view stopSent = "Stop sent. Waiting for exit…";
inline constexpr std::string_view quitWarning = "Unsaved work will be lost."; ///< beside a forced quit

/// The largest whole unit that fits: "3d", "5h", "12m"; "<1m" below a minute and for what is no length.
std::string uptime(Seconds length);
/// "up 5h", or "quiet 2h+" for a server that has been quiet that long.
std::string serverMeta(Seconds uptime, bool quiet);
/// Why Dhiru stands as he does; nothing while he is calm.
std::optional<std::string_view> reason(DevWatchActivityState state);
/// The word for a kind: "Dev server", "Database", ...; for part of an application its name.
std::string title(const DevWatchKind& kind);
/// Why a process in the list has no stop button.
std::string_view sentence(DevWatchSafetyRefusal refusal);
/// What became of an attempt to stop a process.
std::string_view sentence(const DevWatchTerminationOutcome& outcome);
/// "node came back. Something restarts it automatically."
std::string sentence(const DevWatchRelaunch::Stopped& back);
/// The name of the folder that a server works in; nothing for the root and for `home`, which are nobody's
/// project.
std::optional<std::string> project(const std::string& workingDirectory, const std::string& home);

} // namespace DevWatchPresentation

} // namespace FellowCore
