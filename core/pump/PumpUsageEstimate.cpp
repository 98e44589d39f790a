#include "core/pump/PumpUsageEstimate.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>
#include <span>

namespace FellowCore {

namespace {

/// Stays at the largest number rather than going beyond it.
void addTo(std::int64_t& sum, std::int64_t tokens) {
    if (__builtin_add_overflow(sum, tokens, &sum)) {
        sum = std::numeric_limits<std::int64_t>::max();
    }
}

/// Follows activity in the order of time and knows the block it is in.
class BlockWalk {
public:
    explicit BlockWalk(const Calendar& calendar) : calendar_(calendar) {}

    void meet(Instant activity) {
        if (!start_ || activity >= *start_ + PumpClaudeUsage::blockLength) {
            start_ = startOfHour(calendar_, activity);
        }
    }
    /// The block that is still open.
    std::optional<Instant> startAt(Instant now) const {
        return start_ && now < *start_ + PumpClaudeUsage::blockLength ? start_ : std::nullopt;
    }

private:
    const Calendar& calendar_;
    std::optional<Instant> start_;
};

/// The start of the block that `now` is in, from records and hours that are each in order.
std::optional<Instant> blockStart(std::span<const PumpUsageRecord> records,
                                  std::span<const std::int64_t> hours, const Calendar& calendar,
                                  Instant now) {
    BlockWalk walk(calendar);
    auto record = records.begin();
    for (const std::int64_t seconds : hours) {
        const Instant hour = Instant::fromUnix(static_cast<Seconds>(seconds));
        if (hour > now) {
            break;
        }
        for (; record != records.end() && record->at <= hour; ++record) {
            walk.meet(record->at);
        }
        walk.meet(hour);
    }
    for (; record != records.end(); ++record) {
        walk.meet(record->at);
    }
    return walk.startAt(now);
}

std::int64_t tokensFrom(std::span<const PumpUsageRecord> records, Instant from) {
    std::int64_t sum = 0;
    for (const PumpUsageRecord& record : records) {
        if (record.at >= from) {
            addTo(sum, record.counts.input);
            addTo(sum, record.counts.output);
        }
    }
    return sum;
}

} // namespace

Instant startOfWeek(const Calendar& calendar, Instant now) {
    const auto today = calendar.day(now);
    if (!today) {
        return now;
    }
    const std::chrono::sys_days day(*today);
    const std::chrono::days sinceMonday = std::chrono::weekday(day) - std::chrono::Monday;
    if (const auto monday = calendar.startOfDay(day - sinceMonday)) {
        return *monday;
    }
    return calendar.startOfDay(*today).value_or(now);
}

PumpClaudeUsage estimatedUsage(PumpUsageRecords& records, const Calendar& calendar, Instant now,
                               Instant weekStart, std::int64_t budget) {
    const std::vector<PumpUsageRecord>& all = records.merged();
    const auto end =
        std::upper_bound(all.begin(), all.end(), now,
                         [](Instant at, const PumpUsageRecord& record) { return at < record.at; });
    const std::span<const PumpUsageRecord> past(all.begin(), end);
    const std::vector<std::int64_t>& hours = records.hours();

    PumpClaudeUsage usage;
    usage.hasLogs = !past.empty() || !hours.empty();
    usage.weekTokens = tokensFrom(past, weekStart);
    usage.blockStart = blockStart(past, hours, calendar, now);
    if (usage.blockStart) {
        usage.resetsAt = *usage.blockStart + PumpClaudeUsage::blockLength;
        usage.blockTokens = tokensFrom(past, *usage.blockStart); // none is later than now, nor than the end
    }
    usage.usedPercent = static_cast<double>(usage.blockTokens) / static_cast<double>(budget) * 100;
    return usage;
}

} // namespace FellowCore
