#include "app/characters/pump/PumpDates.h"

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <QCoreApplication>
#include <QLocale>

#include <memory>

namespace DeskSprites::PumpDates {

namespace {

std::unique_ptr<icu::SimpleDateFormat> formatFor(const QString& localeName) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale(localeName.toLatin1().constData());
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status)) {
        return nullptr;
    }
    const icu::UnicodeString pattern = patterns->getBestPattern(icu::UnicodeString("dMMMjmm"), status);
    auto format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
    if (U_FAILURE(status)) {
        return nullptr;
    }
    format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
    return format;
}

} // namespace

QString dayAndTime(const std::optional<FellowCore::Instant>& moment) {
    const auto format = moment && moment->isFinite() ? formatFor(QLocale().name()) : nullptr;
    if (!format) {
        return QCoreApplication::translate("Pump", "Unavailable");
    }
    icu::UnicodeString text;
    format->format(moment->toUnix() * 1000, text);
    std::string bytes;
    text.toUTF8String(bytes);
    return QString::fromStdString(bytes);
}

} // namespace DeskSprites::PumpDates
