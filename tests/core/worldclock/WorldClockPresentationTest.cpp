#include "core/worldclock/WorldClockPresentation.h"
#include "core/base/Json.h"
#include "core/worldclock/PixelClockGeometry.h"
#include "core/worldclock/WorldClockSearchSelection.h"
#include "core/worldclock/WorldClockTiming.h"
#include "core/worldclock/WorldClockTravel.h"

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>

namespace FellowCore {
namespace {

Instant at(const char* iso8601) {
    return *instantFromIso8601(iso8601);
}

Calendar zone(std::string_view identifier) {
    return *Calendar::inTimeZone(identifier);
}

WorldClockCity bare(std::string_view identifier) {
    return {std::string(identifier), std::string(identifier), ""};
}

/// The same text with ICU's narrow space as a plain one.
std::string plain(std::string text) {
    for (std::size_t found = 0; (found = text.find("\u202F")) != std::string::npos;) {
        text.replace(found, 3, " ");
    }
    return text;
}

TEST(WorldClockFormatter, FollowsItsLocale) {
    struct Case {
        const char* locale;
        const char* time;
        const char* day;
    };
    const Case cases[] = {
        {"en_US", "3:30 PM", "Sat, Nov 22"},
        {"en_GB", "15:30", "Sat, 22 Nov"},
        {"de", "15:30", "Sa., 22. Nov."},
        {"en-US-u-hc-h23", "15:30", "Sat, Nov 22"},
        {"en_US@hours=h23", "15:30", "Sat, Nov 22"},
        {"de-u-hc-h12", "3:30 PM", "Sa., 22. Nov."},
    };
    const Calendar tokyo = zone("Asia/Tokyo");
    for (const Case& row : cases) {
        WorldClockFormatter formatter(row.locale);
        EXPECT_EQ(plain(formatter.time(at("2025-11-22T06:30:59Z"), tokyo)), row.time) << row.locale;
        EXPECT_EQ(formatter.day(at("2025-11-22T06:30:59Z"), tokyo), row.day) << row.locale;
    }
    for (const char* strange : {"", "no such locale", "xx_YY", "\xFF", "-u-", "C"}) {
        WorldClockFormatter formatter(strange);
        EXPECT_FALSE(formatter.time(at("2025-11-22T06:30:59Z"), tokyo).empty()) << strange;
    }
    WorldClockFormatter formatter("en_US");
    EXPECT_EQ(formatter.time({std::nan("")}, tokyo), "");
    EXPECT_EQ(formatter.day({std::numeric_limits<double>::infinity()}, tokyo), "");
}

TEST(WorldClockPresentation, SaysHowFarACityIs) {
    struct Case {
        const char* home;
        const char* city;
        const char* when;
        const char* difference;
        const char* spoken;
        const char* dayLabel;
    };
    const Case cases[] = {
        {"Etc/UTC", "Asia/Kolkata", "2025-11-21T20:00:00Z", "+5:30", "5 hours 30 minutes ahead of home",
         "Tomorrow, Sat Nov 22"},
        {"Asia/Kolkata", "Etc/UTC", "2025-11-21T20:00:00Z", "\u22125:30", "5 hours 30 minutes behind home",
         "Yesterday, Fri Nov 21"},
        {"Europe/Paris", "Europe/Rome", "2025-11-21T20:00:00Z", "Same time", "Same time as home",
         "Today, Fri Nov 21"},
        {"Australia/Sydney", "Australia/Lord_Howe", "2025-07-01T00:00:00Z", "+0:30",
         "30 minutes ahead of home", "Today, Tue Jul 1"},
        {"Europe/London", "Europe/Paris", "2025-07-01T00:00:00Z", "+1:00", "1 hour ahead of home",
         "Today, Tue Jul 1"},
        {"Pacific/Pago_Pago", "Pacific/Kiritimati", "2025-07-01T10:30:00Z", "+25:00",
         "25 hours ahead of home", "Wed, Jul 2"},
    };
    WorldClockFormatter formatter("en_US");
    for (const Case& row : cases) {
        const auto shown =
            WorldClockPresentation::row(bare(row.city), bare(row.home), at(row.when), false, formatter);
        EXPECT_EQ(shown.difference, row.difference) << row.city;
        EXPECT_EQ(shown.spokenDifference, row.spoken) << row.city;
        EXPECT_EQ(shown.dayLabel, row.dayLabel) << row.city;
    }
    const auto unknown = WorldClockPresentation::row(bare("Mars/Olympus"), bare("Etc/UTC"),
                                                     at("2025-07-01T00:00:00Z"), false, formatter);
    EXPECT_EQ(unknown.time + unknown.dayLabel + unknown.difference, "");
}

TEST(WorldClockPresentation, ListsHomeFirstAndOnce) {
    const WorldClockCatalog catalog;
    WorldClockFormatter formatter("en_GB");
    WorldClockState state;
    state.addCity("Asia/Tokyo", catalog, "Europe/Paris");
    state.addCity("America/Lima", catalog, "Europe/Paris");
    state.setPinned("America/Lima", true, catalog, "Europe/Paris");
    const Instant when = at("2025-11-21T20:00:00Z");
    const auto rows = WorldClockPresentation::rows(state, when, catalog, "Europe/Paris", formatter);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_TRUE(rows[0].isHome && !rows[1].isHome && !rows[1].isPinned && rows[2].isPinned);
    EXPECT_EQ(WorldClockPresentation::text(rows[0]), "Paris: 21:00, Today, Fri 21 Nov");
    EXPECT_EQ(WorldClockPresentation::text(rows[1]), "Tokyo: 05:00, Tomorrow, Sat 22 Nov (+8:00)");
}

/// ICU asked directly, field by field: what a calendar on a wall in that zone shows.
struct WallCalendar {
    WallCalendar(const std::string& identifier, Instant when) {
        UErrorCode status = U_ZERO_ERROR;
        icu::GregorianCalendar calendar(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(identifier)), status);
        calendar.setTime(when.toUnix() * 1000, status);
        hour = calendar.get(UCAL_HOUR_OF_DAY, status);
        minute = calendar.get(UCAL_MINUTE, status);
        julianDay = calendar.get(UCAL_JULIAN_DAY, status);
        offset = (calendar.get(UCAL_ZONE_OFFSET, status) + calendar.get(UCAL_DST_OFFSET, status)) / 1000;
        EXPECT_TRUE(U_SUCCESS(status));
    }

    int hour, minute, julianDay, offset;
};

TEST(WorldClockPresentation, AgreesWithTheZoneDatabase) {
    const auto zones = systemTimeZones();
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> anyZone(0, zones.size() - 1);
    std::uniform_int_distribution<std::int64_t> anySecond(0, 4'000'000'000);
    WorldClockFormatter formatter("en_GB");
    int acrossDays = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string& there = zones[anyZone(random)];
        const std::string& here = zones[anyZone(random)];
        Instant when = Instant::fromUnix(static_cast<double>(anySecond(random)));
        if (round % 3 == 0) {
            // The hours around a change of clocks in the northern spring and autumn.
            const std::int64_t year = 1996 + round % 25;
            when = *instantFromIso8601(std::to_string(year) +
                                       (round % 2 == 0 ? "-03-31T00:00:00Z" : "-10-27T00:00:00Z")) +
                   static_cast<double>(anySecond(random) % 14400);
        }
        const auto row = WorldClockPresentation::row(bare(there), bare(here), when, false, formatter);
        const WallCalendar city(there, when);
        const WallCalendar home(here, when);
        char time[8];
        std::snprintf(time, sizeof time, "%02d:%02d", city.hour, city.minute);
        ASSERT_EQ(row.time, time) << there << " at " << when.toUnix();
        ASSERT_EQ(row.dayDifference, city.julianDay - home.julianDay) << there << " from " << here;
        ASSERT_EQ(row.differenceSeconds, city.offset - home.offset) << there << " from " << here;
        ASSERT_EQ(PixelClockGeometry::hands(when, zone(there), {50, 50}, 20, 40),
                  PixelClockGeometry::hands(city.hour, city.minute, {50, 50}, 20, 40));
        acrossDays += row.dayDifference == 0 ? 0 : 1;
    }
    EXPECT_GT(acrossDays, 500);
}

TEST(WorldClockTravel, SpansTheDayAsItIs) {
    struct Case {
        const char* fault;
        const char* zone;
        const char* date;
        const char* start;
        int minutes;
    };
    const Case cases[] = {
        {"a common day", "Europe/Berlin", "2025-11-21T12:00:00Z", "2025-11-20T23:00:00Z", 1440},
        {"clocks go forward", "Europe/Berlin", "2025-03-30T12:00:00Z", "2025-03-29T23:00:00Z", 1380},
        {"clocks go back", "Europe/Berlin", "2025-10-26T12:00:00Z", "2025-10-25T22:00:00Z", 1500},
        {"half an hour", "Australia/Lord_Howe", "2025-10-05T05:00:00Z", "2025-10-04T13:30:00Z", 1410},
        {"no midnight", "America/Santiago", "2021-09-05T12:00:00Z", "2021-09-05T04:00:00Z", 1380},
        {"the next day has no midnight", "America/Santiago", "2021-09-04T12:00:00Z", "2021-09-04T04:00:00Z",
         1440},
        {"the next day was left out", "Pacific/Apia", "2011-12-30T05:00:00Z", "2011-12-29T10:00:00Z", 1440},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.fault);
        const auto travel = WorldClockTravel::anchor(at(row.date), zone(row.zone));
        ASSERT_TRUE(travel);
        EXPECT_EQ(iso8601Text(travel->start), row.start);
        EXPECT_EQ(travel->maximumMinute, row.minutes);
        EXPECT_EQ(travel->date(9999), travel->end);
        EXPECT_EQ(travel->minute(travel->date(row.minutes / 2)), row.minutes / 2);
    }
    EXPECT_FALSE(WorldClockTravel::anchor({std::nan("")}, zone("Europe/Berlin")));
}

TEST(WorldClockTravel, RoundsAndHoldsMinutes) {
    const auto travel = *WorldClockTravel::anchor(at("2025-11-21T12:00:00Z"), Calendar::utc());
    WorldClockFormatter formatter("en_GB");
    const struct {
        double minute;
        const char* label;
    } cases[] = {{90.4, "01:30"},         {90.5, "01:31"},  {-5, "00:00"},
                 {std::nan(""), "00:00"}, {1e300, "00:00"}, {1439.4, "23:59"}};
    for (const auto& row : cases) {
        EXPECT_EQ(travel.label(row.minute, formatter), row.label) << row.minute;
    }
    EXPECT_EQ(travel.minute(travel.start + 89.9), 1);
    EXPECT_EQ(travel.minute(travel.start + 90), 2);
    EXPECT_EQ(travel.minute(travel.start - 500), 0);
    EXPECT_EQ(travel.minute(travel.end + 1e9), 1440);
}

TEST(WorldClockTiming, TurnsOverOnTheMinute) {
    EXPECT_EQ(WorldClockTiming::nextMinute(Instant::fromUnix(120)).toUnix(), 180);
    EXPECT_EQ(WorldClockTiming::nextMinute(Instant::fromUnix(179.999)).toUnix(), 180);
    EXPECT_EQ(WorldClockTiming::nextMinute(Instant::fromUnix(-0.5)).toUnix(), 0);
    EXPECT_EQ(WorldClockTiming::nextMinute(Instant::fromUnix(-60)).toUnix(), 0);
}

TEST(PixelClockGeometry, PointsWhereTheFormulaSays) {
    using Hands = PixelClockHands;
    EXPECT_EQ(PixelClockGeometry::hands(3, 30, {100, 100}, 50, 80), (Hands{{148, 113}, {100, 180}}));
    EXPECT_EQ(PixelClockGeometry::hands(12, 0, {0, 0}, 5, 9), (Hands{{0, -5}, {0, -9}}));
    EXPECT_EQ(PixelClockGeometry::hands(9, 15, {0, 0}, -5, 20'000), (Hands{{0, 0}, {10'000, 0}}));
    for (int minutes = 0; minutes < 24 * 60; ++minutes) {
        const auto hands = PixelClockGeometry::hands(minutes / 60, minutes % 60, {7, -3}, 31, 47);
        const double hour = minutes * std::numbers::pi / 360;
        const double minute = minutes % 60 * std::numbers::pi / 30;
        EXPECT_NEAR(hands.hour.x, 7 + 31 * std::sin(hour), 0.501);
        EXPECT_NEAR(hands.hour.y, -3 - 31 * std::cos(hour), 0.501);
        EXPECT_NEAR(hands.minute.x, 7 + 47 * std::sin(minute), 0.501);
        EXPECT_NEAR(hands.minute.y, -3 - 47 * std::cos(minute), 0.501);
    }
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(PixelClockGeometry::hands(3, 15, {most, 0}, 9, 9).minute.x, most);
}

TEST(WorldClockSearchSelection, MovesWithinTheResults) {
    const struct {
        const char* fault;
        std::optional<int> from;
        int delta, count;
        std::optional<int> to;
    } cases[] = {
        {"past the end", 4, 1, 5, 4},          {"before the start", 0, -1, 5, 0},
        {"of nothing", 3, 1, 0, std::nullopt}, {"from nowhere down", {}, 1, 5, 1},
        {"from nowhere up", {}, -1, 5, 0},     {"fewer results", 9, 0, 3, 2},
        {"one result", {}, 1, 1, 0},           {"too far to count", 4, 2147483647, 9, 8},
    };
    for (const auto& row : cases) {
        WorldClockSearchSelection selection{row.from};
        selection.move(row.delta, row.count);
        EXPECT_EQ(selection.index, row.to) << row.fault;
    }
}

} // namespace
} // namespace FellowCore
