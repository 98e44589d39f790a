#pragma once

#include "core/base/Instant.h"

#include <QString>

#include <optional>

namespace DeskSprites::PumpDates {

/// The day of the month, the month's short name, and the time, in the order and the clock (12 or 24 hours)
/// of the user's locale and in the machine's time zone; "Unavailable" for no moment.
QString dayAndTime(const std::optional<FellowCore::Instant>& moment);

} // namespace DeskSprites::PumpDates
