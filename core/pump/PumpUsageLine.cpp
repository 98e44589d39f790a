#include "core/pump/PumpUsageLine.h"

#include "core/base/Json.h"
#include "core/pump/PumpUsageLogs.h"

#include <array>

namespace FellowCore {

namespace {

using PumpUsageJSON::Field;
using PumpUsageJSON::Values;

bool isString(const Values& values, Field field, std::string_view wanted) {
    const std::string* const text = values.string(field);
    return text != nullptr && *text == wanted;
}

std::optional<Instant> timestamp(const Values& values, Instant now) {
    const std::string* const text = values.string(Field::timestamp);
    const auto at = text != nullptr ? instantFromIso8601(*text) : std::nullopt;
    return at && *at >= Instant::fromUnix(0) && *at <= now ? at : std::nullopt;
}

/// Nothing when none is given, or one is given that is no count.
std::optional<PumpTokenCounts> tokenCounts(const Values& values) {
    PumpTokenCounts counts;
    const std::array<std::pair<Field, std::int64_t*>, 4> counters{
        {{Field::inputTokens, &counts.input},
         {Field::outputTokens, &counts.output},
         {Field::cacheCreationInputTokens, &counts.cacheCreation},
         {Field::cacheReadInputTokens, &counts.cacheRead}}};
    bool any = false;
    for (const auto& [field, counter] : counters) {
        if (!values.has(field)) {
            continue;
        }
        const auto count = PumpUsageJSON::count(field, values);
        if (!count) {
            return std::nullopt;
        }
        *counter = *count;
        any = true;
    }
    return any ? std::optional(counts) : std::nullopt;
}

PumpRecordKey keyOf(const Values& values, const FileIdentity& file, std::uint64_t offset) {
    const std::string* const id = values.string(Field::messageID);
    return pumpRecordKey(id != nullptr && !id->empty()
                             ? "message:" + *id
                             : "file:" + pumpIdentityText(file) + "|offset:" + std::to_string(offset));
}

std::optional<double> numberIn(Field field, const Values& values, double least, double most) {
    const auto number = PumpUsageJSON::number(field, values);
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

std::optional<std::string> planType(const Values& values) {
    for (const Field field : {Field::payloadPlanType, Field::rateLimitsPlanType, Field::planType}) {
        if (const std::string* const text = values.string(field)) {
            return *text;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<PumpClaudeLine> pumpClaudeLine(const Values& values, const FileIdentity& file,
                                             std::uint64_t offset, Instant now) {
    constexpr std::string_view assistant = "assistant";
    if (!isString(values, Field::type, assistant) ||
        (values.has(Field::messageRole) && !isString(values, Field::messageRole, assistant))) {
        return std::nullopt;
    }
    const auto at = timestamp(values, now);
    const auto counts = at ? tokenCounts(values) : std::nullopt;
    if (!counts) {
        return std::nullopt;
    }
    return PumpClaudeLine{keyOf(values, file, offset), {*at, *counts}};
}

std::optional<PumpCodexUsage> pumpCodexLine(const Values& values, Instant now) {
    constexpr double lastSecond = 253402300799; // of the year 9999
    if (!isString(values, Field::type, "event_msg") || !isString(values, Field::payloadType, "token_count")) {
        return std::nullopt;
    }
    const auto at = timestamp(values, now);
    const auto used = numberIn(Field::primaryUsedPercent, values, 0, 100);
    const auto window = PumpUsageJSON::number(Field::primaryWindowMinutes, values);
    if (!at || !used || !window || !(*window > 0)) {
        return std::nullopt;
    }
    const auto reset = numberIn(Field::primaryResetsAt, values, 0, lastSecond);
    return PumpCodexUsage{.usedPercent = *used,
                          .windowMinutes = *window,
                          .resetsAt = reset ? std::optional(Instant::fromUnix(*reset)) : std::nullopt,
                          .planType = planType(values),
                          .observedAt = *at};
}

} // namespace FellowCore
