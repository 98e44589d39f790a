#include "core/worldclock/WorldClockTravel.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

constexpr Seconds secondsPerMinute = 60;

double held(double minute, int maximum) {
    return std::isnan(minute) ? 0 : std::clamp(std::round(minute), 0.0, static_cast<double>(maximum));
}

} // namespace

std::optional<WorldClockTravel> WorldClockTravel::anchor(Instant date, const Calendar& homeTimeZone) {
    const auto day = homeTimeZone.day(date);
    const auto start = day ? homeTimeZone.startOfDay(*day) : std::nullopt;
    const auto end = homeTimeZone.startOfNextDay(date);
    if (!start || !end) {
        return std::nullopt;
    }
    return WorldClockTravel{*start, *end, homeTimeZone,
                            static_cast<int>(std::floor((*end - *start) / secondsPerMinute))};
}

Instant WorldClockTravel::date(double atMinute) const {
    return start + held(atMinute, maximumMinute) * secondsPerMinute;
}

int WorldClockTravel::minute(Instant forDate) const {
    return static_cast<int>(held((forDate - start) / secondsPerMinute, maximumMinute));
}

std::string WorldClockTravel::label(double atMinute, WorldClockFormatter& formatter) const {
    return formatter.time(date(atMinute), homeTimeZone);
}

} // namespace FellowCore
