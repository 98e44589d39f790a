#pragma once

#include "core/base/Calendar.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// A day as text, "2026-03-01". The keys of two days sort in date order as plain text, which holds for the
/// years 0 to 9999 and is why no other year has a key.
///
/// Empty for a day that has none.
std::string dayKey(CalendarDay day);
/// The key of the day on which an instant falls; empty also for an instant that is not finite.
std::string dayKey(Instant at, const Calendar& calendar);
/// Reads a key strictly: four, two and two digits that name a day which exists.
std::optional<CalendarDay> dayFromKey(std::string_view key);
/// Whole days from one key's day to the other's, negative when `to` is earlier; nothing when either is no
/// key. Days are counted as dates, so a change of the clocks never makes one too many or too few.
std::optional<std::int64_t> daysBetween(std::string_view from, std::string_view to);

} // namespace FellowCore
