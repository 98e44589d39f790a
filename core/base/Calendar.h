#pragma once

#include "core/base/Instant.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// A day without a time or a place, in the Gregorian calendar carried backwards before 1582 too, as ISO 8601
/// has it.
using CalendarDay = std::chrono::year_month_day;

/// The Gregorian calendar of one time zone: which day an instant falls on, and when a day begins. The zone's
/// rules are ICU's. A value that is cheap to copy and may be read from several threads.
class Calendar {
public:
    /// A calendar for an IANA identifier ("Asia/Kolkata") or a fixed offset ("GMT+05:30"); nothing for an
    /// identifier that names no zone.
    static std::optional<Calendar> inTimeZone(std::string_view identifier);
    static Calendar utc();

    const std::string& timeZone() const { return timeZone_; }
    /// How far the zone's clocks are ahead of UTC; 0 for an instant that is not finite.
    Seconds utcOffset(Instant at) const;
    /// Nothing when the instant is not finite or its year is not in -32000...32000.
    std::optional<CalendarDay> day(Instant at) const;
    /// The first instant of a day, which is midnight unless the clocks were put forward over it. Nothing for
    /// a day that is none (30 February), that the zone skipped, or whose year is out of range.
    std::optional<Instant> startOfDay(CalendarDay day) const;
    /// When the day after the one of `at` begins: the moment for which a timer is set that waits for
    /// midnight.
    std::optional<Instant> startOfNextDay(Instant at) const;

private:
    struct Zone;

    Calendar(std::string identifier, std::shared_ptr<const Zone> zone);

    std::string timeZone_;
    std::shared_ptr<const Zone> zone_;
};

} // namespace FellowCore
