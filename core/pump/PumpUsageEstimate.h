#pragma once

#include "core/base/Calendar.h"
#include "core/base/Instant.h"
#include "core/pump/PumpClaudeUsage.h"
#include "core/pump/PumpUsageRecords.h"

#include <cstdint>

namespace FellowCore {

/// When the week began that holds `now`, on a Monday as ISO 8601 has it; `now` itself where the calendar has
/// no answer.
Instant startOfWeek(const Calendar& calendar, Instant now);

/// Claude's usage from its logs. A block of five hours opens with the first activity after the one before has
/// run out, at the start of that activity's hour. `budget` is in tokens, above 0.
PumpClaudeUsage estimatedUsage(PumpUsageRecords& records, const Calendar& calendar, Instant now,
                               Instant weekStart, std::int64_t budget);

} // namespace FellowCore
