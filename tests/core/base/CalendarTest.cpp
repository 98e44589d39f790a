#include "core/base/Calendar.h"

#include "core/base/Json.h"

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

using namespace std::chrono;

Instant instant(const char* text) {
    return instantFromIso8601(text).value();
}

std::string dayText(std::optional<CalendarDay> day) {
    return day ? iso8601Text(Instant::fromUnix(
                                 static_cast<double>(seconds(sys_days(*day).time_since_epoch()).count())))
                     .substr(0, 10)
               : "none";
}

TEST(Calendar, TheDayIsTheZones) {
    const struct {
        const char* fault;
        const char* zone;
        const char* at;
        const char* day;
        Seconds offset;
    } cases[] = {
        {"UTC's day taken for the zone's", "Asia/Kolkata", "2026-03-01T18:29:59Z", "2026-03-01", 19800},
        {"midnight still the day before", "Asia/Kolkata", "2026-03-01T18:30:00Z", "2026-03-02", 19800},
        {"behind UTC", "America/New_York", "2026-03-01T04:59:59Z", "2026-02-28", -18000},
        {"summer time forgotten", "America/New_York", "2026-07-01T04:00:00Z", "2026-07-01", -14400},
        {"a fixed offset", "GMT+05:45", "2026-03-01T18:15:00Z", "2026-03-02", 20700},
        {"before 1970 rounded towards it", "Etc/UTC", "1969-12-31T23:59:59Z", "1969-12-31", 0},
        {"the Julian calendar before 1582", "Etc/UTC", "1582-10-14T12:00:00Z", "1582-10-14", 0},
        {"a leap day", "Etc/UTC", "2024-02-29T23:59:59.999Z", "2024-02-29", 0},
    };
    for (const auto& row : cases) {
        const auto calendar = Calendar::inTimeZone(row.zone);
        ASSERT_TRUE(calendar) << row.zone;
        EXPECT_EQ(dayText(calendar->day(instant(row.at))), row.day) << row.fault;
        EXPECT_EQ(calendar->utcOffset(instant(row.at)), row.offset) << row.fault;
    }
}

TEST(Calendar, ADayBeginsWhereItsFirstInstantIs) {
    const struct {
        const char* fault;
        const char* zone;
        CalendarDay day;
        const char* start; ///< nullptr: there is none
    } cases[] = {
        {"an ordinary day", "Europe/Berlin", 2026y / 3 / 29, "2026-03-28T23:00:00Z"},
        {"a day of 23 hours ends later", "Europe/Berlin", 2026y / 3 / 30, "2026-03-29T22:00:00Z"},
        {"midnight skipped", "America/Sao_Paulo", 2018y / 11 / 4, "2018-11-04T03:00:00Z"},
        {"midnight twice: the second", "Atlantic/Azores", 2025y / 10 / 26, "2025-10-26T00:00:00Z"},
        {"a whole day skipped", "Pacific/Apia", 2011y / 12 / 30, nullptr},
        {"the day after it", "Pacific/Apia", 2011y / 12 / 31, "2011-12-30T10:00:00Z"},
        {"no such day", "Etc/UTC", 2026y / 2 / 30, nullptr},
        {"a year out of reach", "Etc/UTC", year(32767) / 1 / 1, nullptr},
    };
    for (const auto& row : cases) {
        const auto start = Calendar::inTimeZone(row.zone)->startOfDay(row.day);
        EXPECT_EQ(start ? iso8601Text(*start) : "none", row.start ? row.start : "none") << row.fault;
    }
}

TEST(Calendar, TheNextDayComesAfterAnyInstant) {
    const auto next = [](const char* zone, const char* at) {
        return iso8601Text(Calendar::inTimeZone(zone)->startOfNextDay(instant(at)).value());
    };
    EXPECT_EQ(next("Europe/Berlin", "2026-03-29T22:00:00Z"), "2026-03-30T22:00:00Z");
    EXPECT_EQ(next("America/Sao_Paulo", "2018-11-04T02:59:59Z"), "2018-11-04T03:00:00Z");
    EXPECT_EQ(next("Pacific/Apia", "2011-12-30T09:59:59Z"), "2011-12-30T10:00:00Z");

    // Hour by hour through two changes of the clocks: always ahead, at most 25 hours, and a new day there.
    const Calendar berlin = Calendar::inTimeZone("Europe/Berlin").value();
    for (Instant at = instant("2026-03-27T00:30:00Z"); at < instant("2026-11-01T00:00:00Z"); at = at + 3600) {
        const Instant start = berlin.startOfNextDay(at).value();
        ASSERT_GT(start, at);
        ASSERT_LE(start - at, 25 * 3600);
        ASSERT_NE(berlin.day(start), berlin.day(at)) << iso8601Text(at);
        ASSERT_EQ(berlin.day(start - 1), berlin.day(at)) << iso8601Text(at);
    }
}

TEST(Calendar, AnswersNothingWhereThereIsNothing) {
    for (const char* zone : {"", "Mars/Olympus", "asia/calcutta\xFF", "EST5PDT9"}) {
        EXPECT_FALSE(Calendar::inTimeZone(zone)) << zone;
    }
    const Calendar utc = Calendar::utc();
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e300, 1e13}) {
        EXPECT_FALSE(utc.day(Instant{seconds})) << seconds;
        EXPECT_FALSE(utc.startOfNextDay(Instant{seconds})) << seconds;
    }
    EXPECT_EQ(utc.utcOffset(Instant{std::numeric_limits<double>::infinity()}), 0);
}

} // namespace
} // namespace FellowCore
