#include "core/worldclock/WorldClockPresentation.h"

#include <cmath>
#include <cstdlib>

namespace FellowCore {

namespace {

std::string counted(int count, const std::string& unit) {
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

/// Hours and minutes between two clocks; offsets of former centuries have seconds, which no one reads.
struct HoursAndMinutes {
    explicit HoursAndMinutes(int seconds)
        : minutes(static_cast<int>(std::lround(std::abs(seconds) / 60.0))), isAhead(seconds > 0) {}

    std::string text() const {
        if (minutes == 0) {
            return "Same time";
        }
        const std::string rest = std::to_string(minutes % 60);
        return (isAhead ? "+" : "\u2212") + std::to_string(minutes / 60) + (rest.size() == 1 ? ":0" : ":") +
               rest;
    }

    std::string spoken() const {
        if (minutes == 0) {
            return "Same time as home";
        }
        std::string words = minutes >= 60 ? counted(minutes / 60, "hour") : "";
        if (minutes % 60 != 0) {
            words += (words.empty() ? "" : " ") + counted(minutes % 60, "minute");
        }
        return words + (isAhead ? " ahead of home" : " behind home");
    }

    int minutes;
    bool isAhead;
};

/// The day behind its word takes no comma of its own.
std::string dayLabel(int difference, std::string day) {
    const char* const word = difference == 0    ? "Today"
                             : difference == 1  ? "Tomorrow"
                             : difference == -1 ? "Yesterday"
                                                : nullptr;
    if (word == nullptr || day.empty()) {
        return day;
    }
    if (const std::size_t comma = day.find(", "); comma != std::string::npos) {
        day.erase(comma, 1);
    }
    return std::string(word) + ", " + day;
}

int daysBetween(const Calendar& home, const Calendar& city, Instant at) {
    const auto here = home.day(at);
    const auto there = city.day(at);
    return here && there
               ? static_cast<int>((std::chrono::sys_days(*there) - std::chrono::sys_days(*here)).count())
               : 0;
}

} // namespace

WorldClockRow WorldClockPresentation::row(const WorldClockCity& city, const WorldClockCity& home, Instant at,
                                          bool isPinned, WorldClockFormatter& formatter) {
    WorldClockRow row;
    row.identifier = city.identifier;
    row.city = city.name;
    row.region = city.region;
    row.isHome = city.identifier == home.identifier;
    row.isPinned = isPinned;
    const auto zone = city.timeZone();
    const auto homeZone = home.timeZone();
    if (!zone || !homeZone) {
        return row;
    }
    row.dayDifference = daysBetween(*homeZone, *zone, at);
    row.differenceSeconds = static_cast<int>(zone->utcOffset(at) - homeZone->utcOffset(at));
    row.time = formatter.time(at, *zone);
    row.dayLabel = dayLabel(row.dayDifference, formatter.day(at, *zone));
    const HoursAndMinutes between(row.differenceSeconds);
    row.difference = between.text();
    row.spokenDifference = between.spoken();
    return row;
}

std::vector<WorldClockRow> WorldClockPresentation::rows(const WorldClockState& state, Instant at,
                                                        const WorldClockCatalog& catalog,
                                                        std::string_view systemTimeZone,
                                                        WorldClockFormatter& formatter) {
    const std::vector<WorldClockCity> cities = state.orderedCities(catalog, systemTimeZone);
    std::vector<WorldClockRow> rows;
    for (const WorldClockCity& city : cities) {
        rows.push_back(row(city, cities.front(), at, state.isPinned(city.identifier), formatter));
    }
    return rows;
}

std::string WorldClockPresentation::text(const WorldClockRow& row) {
    const std::string difference = row.isHome || row.difference.empty() ? "" : " (" + row.difference + ")";
    return row.city + ": " + row.time + ", " + row.dayLabel + difference;
}

} // namespace FellowCore
