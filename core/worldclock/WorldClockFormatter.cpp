#include "core/worldclock/WorldClockFormatter.h"

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <map>
#include <utility>

namespace FellowCore {

namespace {

using Formats = std::map<std::string, std::unique_ptr<icu::DateFormat>, std::less<>>;

std::unique_ptr<icu::DateFormat> formatOf(const icu::Locale& locale, const char* skeleton) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status) || !patterns) {
        return nullptr;
    }
    const icu::UnicodeString pattern =
        patterns->getBestPattern(icu::UnicodeString(skeleton, -1, US_INV), status);
    auto format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
    return U_SUCCESS(status) ? std::move(format) : nullptr;
}

/// The short style, which knows the locale's habit but not a wish for the other kind of clock.
std::unique_ptr<icu::DateFormat> timeFormat(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const auto hours = locale.getKeywordValue<std::string>("hours", status);
    if (U_SUCCESS(status) && (hours == "h11" || hours == "h12")) {
        return formatOf(locale, "hmm");
    }
    if (U_SUCCESS(status) && (hours == "h23" || hours == "h24")) {
        return formatOf(locale, "Hmm");
    }
    return std::unique_ptr<icu::DateFormat>(
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
}

std::unique_ptr<icu::DateFormat> dayFormat(const icu::Locale& locale) {
    return formatOf(locale, "EEEMMMd");
}

template <typename Make>
std::string written(Formats& formats, Instant at, const Calendar& in, const Make& make) {
    auto held = formats.find(in.timeZone());
    if (held == formats.end()) {
        std::unique_ptr<icu::DateFormat> format = make();
        if (format) {
            format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(in.timeZone())));
        }
        held = formats.emplace(in.timeZone(), std::move(format)).first;
    }
    std::string text;
    if (held->second && at.isFinite()) {
        constexpr double millisecondsPerSecond = 1000;
        icu::UnicodeString shown;
        held->second->format(at.toUnix() * millisecondsPerSecond, shown).toUTF8String(text);
    }
    return text;
}

icu::Locale localeOf(const std::string& name) {
    // The form with "-u-" is a language tag; the one with "_" or "@" is ICU's own.
    if (name.find('_') != std::string::npos || name.find('@') != std::string::npos) {
        return icu::Locale::createFromName(name.c_str());
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale tagged = icu::Locale::forLanguageTag(name, status);
    return U_SUCCESS(status) ? tagged : icu::Locale::getRoot();
}

} // namespace

struct WorldClockFormatter::Formats {
    icu::Locale locale;
    FellowCore::Formats timeFormatters;
    FellowCore::Formats dayFormatters;
};

WorldClockFormatter::WorldClockFormatter(std::string_view locale)
    : locale_(locale), formats_(std::make_unique<Formats>()) {
    formats_->locale = localeOf(locale_);
}

WorldClockFormatter::~WorldClockFormatter() = default;

std::string WorldClockFormatter::time(Instant at, const Calendar& in) {
    return written(formats_->timeFormatters, at, in, [this] { return timeFormat(formats_->locale); });
}

std::string WorldClockFormatter::day(Instant at, const Calendar& in) {
    return written(formats_->dayFormatters, at, in, [this] { return dayFormat(formats_->locale); });
}

} // namespace FellowCore
