#pragma once

#include "core/base/Calendar.h"

#include <unicode/timezone.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace Platform {

/// The calendar of the time zone that the machine is set to, looked up anew with each call. Needs no window
/// system, so that a program without windows keeps the same days.
inline FellowCore::Calendar localCalendar() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    if (!zone) {
        return FellowCore::Calendar::utc();
    }
    icu::UnicodeString identifier;
    std::string text;
    zone->getID(identifier).toUTF8String(text);
    if (auto calendar = FellowCore::Calendar::inTimeZone(text)) {
        return *calendar;
    }
    // A zone without a name that is known still has an offset.
    const int minutes = zone->getRawOffset() / 60'000;
    char offset[32];
    std::snprintf(offset, sizeof offset, "GMT%c%02d:%02d", minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                  std::abs(minutes) % 60);
    return FellowCore::Calendar::inTimeZone(offset).value_or(FellowCore::Calendar::utc());
}

} // namespace Platform
