#include "core/base/Calendar.h"

#include <unicode/basictz.h>
#include <unicode/tztrans.h>
#include <unicode/unistr.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace FellowCore {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr Seconds secondsPerDay = 86400;
constexpr Seconds millisecondsPerSecond = 1000;
// The years that both std::chrono and ICU hold with room to spare.
constexpr std::chrono::year firstYear{-32000};
constexpr std::chrono::year lastYear{32000};
constexpr Seconds firstSecond = sys_days(firstYear / 1 / 1).time_since_epoch().count() * secondsPerDay;
constexpr Seconds lastSecond = sys_days(lastYear / 12 / 31).time_since_epoch().count() * secondsPerDay;

bool inRange(Seconds unix) {
    return unix >= firstSecond && unix <= lastSecond; // false for what is not a number
}

} // namespace

struct Calendar::Zone {
    std::unique_ptr<const icu::TimeZone> owned;
    const icu::BasicTimeZone* rules; ///< the same zone, as one that tells when its offset changes
};

Calendar::Calendar(std::string identifier, std::shared_ptr<const Zone> zone)
    : timeZone_(std::move(identifier)), zone_(std::move(zone)) {}

std::optional<Calendar> Calendar::inTimeZone(std::string_view identifier) {
    constexpr std::size_t longestIdentifier = 255;
    if (identifier.empty() || identifier.size() > longestIdentifier) {
        return std::nullopt;
    }
    const icu::StringPiece bytes(identifier.data(), static_cast<std::int32_t>(identifier.size()));
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(bytes)));
    if (!zone || *zone == icu::TimeZone::getUnknown()) {
        return std::nullopt;
    }
    // Every zone that ICU makes from an identifier is one of these.
    const auto* const rules = dynamic_cast<const icu::BasicTimeZone*>(zone.get());
    if (rules == nullptr) {
        return std::nullopt;
    }
    return Calendar(std::string(identifier), std::make_shared<const Zone>(Zone{std::move(zone), rules}));
}

Calendar Calendar::utc() {
    return inTimeZone("Etc/UTC").value();
}

Seconds Calendar::utcOffset(Instant at) const {
    if (!at.isFinite()) {
        return 0;
    }
    std::int32_t raw = 0;
    std::int32_t saving = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone_->rules->getOffset(at.toUnix() * millisecondsPerSecond, false, raw, saving, status);
    return U_SUCCESS(status) ? (raw + saving) / millisecondsPerSecond : 0;
}

std::optional<CalendarDay> Calendar::day(Instant at) const {
    if (!inRange(at.toUnix())) {
        return std::nullopt;
    }
    const Seconds local = at.toUnix() + utcOffset(at);
    return CalendarDay(sys_days(days(static_cast<days::rep>(std::floor(local / secondsPerDay)))));
}

std::optional<Instant> Calendar::startOfDay(CalendarDay day) const {
    if (!day.ok() || day.year() < firstYear || day.year() > lastYear) {
        return std::nullopt;
    }
    const Seconds midnight = static_cast<Seconds>(sys_days(day).time_since_epoch().count()) * secondsPerDay;
    std::int32_t raw = 0;
    std::int32_t saving = 0;
    UErrorCode status = U_ZERO_ERROR;
    // Where midnight happens twice the first one is meant; where it was skipped the old offset leads to an
    // instant after the change.
    zone_->rules->getOffsetFromLocal(midnight * millisecondsPerSecond, UCAL_TZ_LOCAL_FORMER,
                                     UCAL_TZ_LOCAL_FORMER, raw, saving, status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    const Seconds offset = (raw + saving) / millisecondsPerSecond;
    Instant start = Instant::fromUnix(midnight - offset);
    icu::TimeZoneTransition change;
    if (utcOffset(start) != offset &&
        zone_->rules->getPreviousTransition(start.toUnix() * millisecondsPerSecond, true, change)) {
        start = Instant::fromUnix(change.getTime() / millisecondsPerSecond);
    }
    return this->day(start) == day ? std::optional(start) : std::nullopt;
}

std::optional<Instant> Calendar::startOfNextDay(Instant at) const {
    const auto today = day(at);
    // No zone ever skipped more than one day at once.
    for (int ahead = 1; today && ahead <= 2; ++ahead) {
        if (const auto start = startOfDay(sys_days(*today) + days(ahead)); start && *start > at) {
            return start;
        }
    }
    return std::nullopt;
}

} // namespace FellowCore
