#pragma once

#include "core/base/Instant.h"

namespace FellowCore {

/// The eased way from one height to another, fast at first and soft at the end (quartic ease-out).
struct DesktopSizeTransition {
    static constexpr Seconds duration = 0.16;

    double from = 0;
    double to = 0;

    /// The height after `elapsed` seconds: `from` at the start and before, `to` at `duration` and after.
    double height(Seconds elapsed) const;
};

} // namespace FellowCore
