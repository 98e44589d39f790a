#pragma once

#include "core/base/Calendar.h"

#include <memory>
#include <string>
#include <string_view>

namespace FellowCore {

/// Writes times and days as people of a locale do, in any zone. Keeps what ICU needs for each zone, so that a
/// minute's turn costs no rebuilding. Used from one thread.
class WorldClockFormatter {
public:
    /// An ICU or BCP 47 locale ("en_IN", "de-u-hc-h12"), which also says whether the day has 12 or 24 hours;
    /// one that is unknown gives the root locale's forms.
    explicit WorldClockFormatter(std::string_view locale);
    ~WorldClockFormatter();
    WorldClockFormatter(const WorldClockFormatter&) = delete;
    WorldClockFormatter& operator=(const WorldClockFormatter&) = delete;

    const std::string& locale() const { return locale_; }
    /// "3:30 PM" or "15:30"; empty for an instant that is not finite.
    std::string time(Instant at, const Calendar& in);
    /// "Sat, Nov 22"; empty for an instant that is not finite.
    std::string day(Instant at, const Calendar& in);

private:
    struct Formats;

    std::string locale_;
    std::unique_ptr<Formats> formats_;
};

} // namespace FellowCore
