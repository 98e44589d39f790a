#include "core/ledger/DayKey.h"

#include <cstdio>

namespace FellowCore {

namespace {

using std::chrono::sys_days;

/// The whole text as a number of digits only.
std::optional<int> digits(std::string_view text) {
    int value = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        value = value * 10 + (digit - '0');
    }
    return value;
}

} // namespace

std::string dayKey(CalendarDay day) {
    const int year = static_cast<int>(day.year());
    if (!day.ok() || year < 0 || year > 9999) {
        return {};
    }
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", year, static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()));
    return text;
}

std::string dayKey(Instant at, const Calendar& calendar) {
    const auto day = calendar.day(at);
    return day ? dayKey(*day) : std::string();
}

std::optional<CalendarDay> dayFromKey(std::string_view key) {
    constexpr std::size_t length = 10;
    if (key.size() != length || key[4] != '-' || key[7] != '-') {
        return std::nullopt;
    }
    const auto year = digits(key.substr(0, 4));
    const auto month = digits(key.substr(5, 2));
    const auto dayOfMonth = digits(key.substr(8, 2));
    if (!year || !month || !dayOfMonth) {
        return std::nullopt;
    }
    const CalendarDay day{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                          std::chrono::day(static_cast<unsigned>(*dayOfMonth))};
    return day.ok() ? std::optional(day) : std::nullopt;
}

std::optional<std::int64_t> daysBetween(std::string_view from, std::string_view to) {
    const auto first = dayFromKey(from);
    const auto last = dayFromKey(to);
    if (!first || !last) {
        return std::nullopt;
    }
    return (sys_days(*last) - sys_days(*first)).count();
}

} // namespace FellowCore
