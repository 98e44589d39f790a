#pragma once

#include "core/worldclock/WorldClockFormatter.h"

#include <optional>
#include <string>

namespace FellowCore {

/// The slider that shows every clock at another minute of home's day. A day on which home's clocks change has
/// 1380 or 1500 minutes, and one that has no midnight begins where it begins.
struct WorldClockTravel {
    Instant start;
    Instant end; ///< the start of the next day
    Calendar homeTimeZone;
    int maximumMinute = 0; ///< whole minutes between them

    /// The day in home's zone that holds the date; nothing when the date is not finite or out of the
    /// calendar.
    static std::optional<WorldClockTravel> anchor(Instant date, const Calendar& homeTimeZone);

    /// The minute is rounded half away from zero and held to 0...maximumMinute; what is no number is 0.
    Instant date(double atMinute) const;
    /// The minute of a date, rounded and held likewise.
    int minute(Instant forDate) const;
    /// The time at home at that minute.
    std::string label(double atMinute, WorldClockFormatter& formatter) const;
};

} // namespace FellowCore
