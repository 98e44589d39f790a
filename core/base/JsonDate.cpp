#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>
#include <cstdio>

namespace FellowCore {

namespace {

using Days = std::chrono::days;

constexpr Seconds secondsPerDay = 86400;

/// Takes the parts of a date off the front of a text, strictly as many digits as asked for.
class DateReader {
public:
    explicit DateReader(std::string_view text) : rest_(text) {}

    bool take(char wanted) {
        if (rest_.empty() || rest_.front() != wanted) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    bool takeNumber(std::size_t digits, int& value) {
        if (rest_.size() < digits) {
            return false;
        }
        value = 0;
        for (std::size_t index = 0; index < digits; ++index) {
            int digit = 0;
            if (!takeDigit(digit)) {
                return false;
            }
            value = value * 10 + digit;
        }
        return true;
    }

    /// A point and at least one digit, or nothing at all.
    bool takeFraction(Seconds& fraction) {
        fraction = 0;
        if (!take('.')) {
            return true;
        }
        int digit = 0;
        Seconds place = 0.1;
        if (!takeDigit(digit)) {
            return false;
        }
        do {
            fraction += digit * place;
            place /= 10;
        } while (takeDigit(digit));
        return true;
    }

    bool atEnd() const { return rest_.empty(); }

private:
    bool takeDigit(int& digit) {
        if (rest_.empty() || rest_.front() < '0' || rest_.front() > '9') {
            return false;
        }
        digit = rest_.front() - '0';
        rest_.remove_prefix(1);
        return true;
    }

    std::string_view rest_;
};

std::optional<Seconds> takeDay(DateReader& reader) {
    int year = 0;
    int month = 0;
    int day = 0;
    if (!reader.takeNumber(4, year) || !reader.take('-') || !reader.takeNumber(2, month) ||
        !reader.take('-') || !reader.takeNumber(2, day)) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) {
        return std::nullopt;
    }
    return static_cast<Seconds>(std::chrono::sys_days(date).time_since_epoch().count()) * secondsPerDay;
}

std::optional<Seconds> takeTime(DateReader& reader) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    Seconds fraction = 0;
    if (!reader.takeNumber(2, hour) || !reader.take(':') || !reader.takeNumber(2, minute) ||
        !reader.take(':') || !reader.takeNumber(2, second) || !reader.takeFraction(fraction)) {
        return std::nullopt;
    }
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return hour * 3600 + minute * 60 + second + fraction;
}

/// How far local time is ahead of UTC.
std::optional<Seconds> takeOffset(DateReader& reader) {
    if (reader.take('Z')) {
        return 0;
    }
    const bool ahead = reader.take('+');
    int hour = 0;
    int minute = 0;
    if ((!ahead && !reader.take('-')) || !reader.takeNumber(2, hour) || !reader.take(':') ||
        !reader.takeNumber(2, minute) || hour > 23 || minute > 59) {
        return std::nullopt;
    }
    return (ahead ? 1 : -1) * (hour * 3600 + minute * 60);
}

} // namespace

std::string iso8601Text(Instant at) {
    // The first and the last day that four digits of a year can name.
    static constexpr auto first =
        std::chrono::sys_days(std::chrono::year(0) / 1 / 1).time_since_epoch().count();
    static constexpr auto last =
        std::chrono::sys_days(std::chrono::year(9999) / 12 / 31).time_since_epoch().count();
    const Seconds seconds = std::floor(at.toUnix());
    const Seconds day = std::floor(seconds / secondsPerDay);
    if (!(day >= first && day <= last)) {
        return {};
    }
    const std::chrono::year_month_day date(std::chrono::sys_days(Days(static_cast<int>(day))));
    const int ofDay = static_cast<int>(seconds - day * secondsPerDay);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), ofDay / 3600,
                  ofDay / 60 % 60, ofDay % 60);
    return text;
}

std::optional<Instant> instantFromIso8601(std::string_view text) {
    DateReader reader(text);
    const auto day = takeDay(reader);
    if (!day || !reader.take('T')) {
        return std::nullopt;
    }
    const auto time = takeTime(reader);
    const auto offset = time ? takeOffset(reader) : std::nullopt;
    if (!offset || !reader.atEnd()) {
        return std::nullopt;
    }
    return Instant::fromUnix(*day + *time - *offset);
}

Json jsonDate(Instant at, JsonDateForm form) {
    if (form == JsonDateForm::secondsSinceReference) {
        return at.sinceReference;
    }
    std::string text = iso8601Text(at);
    return text.empty() ? Json() : Json(std::move(text));
}

Instant instantFromJson(const Json& value, std::string_view field, JsonDateForm form) {
    if (form == JsonDateForm::secondsSinceReference && value.is_number()) {
        return {value.get<double>()};
    }
    if (form == JsonDateForm::iso8601 && value.is_string()) {
        if (const auto at = instantFromIso8601(value.get_ref<const std::string&>())) {
            return *at;
        }
    }
    throw JsonError(JsonError::Kind::wrongType, std::string(field),
                    form == JsonDateForm::iso8601 ? "should be an ISO 8601 date"
                                                  : "should be a date in seconds");
}

} // namespace FellowCore
