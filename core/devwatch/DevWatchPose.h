#pragma once

#include "core/base/Instant.h"
#include "core/devwatch/DevWatchActivityTracker.h"

#include <optional>
#include <string_view>

namespace FellowCore {

/// How often the processes are looked at.
namespace DevWatchPolling {

/// 5 seconds while the user looks at the panel, 30 otherwise.
Seconds interval(bool panelOpen);

} // namespace DevWatchPolling

/// How Dhiru stands.
namespace DevWatchPose {

constexpr Seconds reminderLength = 1.2;
constexpr Seconds reminderBeat = 0.3;

/// The pose's name in his art. `reminderElapsed` is how long ago a reminder to look at a quiet server began:
/// he taps four beats, unless the user wants less motion.
std::string_view name(DevWatchActivityState state, std::optional<Seconds> reminderElapsed, bool reduceMotion);

} // namespace DevWatchPose

} // namespace FellowCore
