#include "core/pump/PumpClaudeUsage.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* fiveHour = "five_hour";
constexpr const char* sevenDay = "seven_day";
constexpr const char* usedPercentage = "used_percentage";
constexpr const char* resetsAt = "resets_at";
} // namespace Key

bool isPercentage(double number) {
    return number >= 0 && number <= 100;
}

/// What the week has used, or 0 when the reading does not say so in earnest.
double weekPercentage(const JsonFields& reading) {
    try {
        const double used = reading.object(Key::sevenDay).number(Key::usedPercentage);
        return isPercentage(used) ? used : 0;
    } catch (const JsonError&) {
        return 0; // the five hours are what the reading is for
    }
}

} // namespace

double PumpClaudeUsage::leftPercent() const {
    return std::clamp(100 - usedPercent, 0.0, 100.0);
}

std::optional<PumpClaudeUsage> PumpClaudeUsage::exact(std::string_view rateLimitsJSON, Instant now) {
    try {
        const Json json = parseJson(rateLimitsJSON);
        const JsonFields reading(json);
        const JsonFields block = reading.object(Key::fiveHour);
        const double used = block.number(Key::usedPercentage);
        const Instant reset = Instant::fromUnix(block.number(Key::resetsAt));
        if (!isPercentage(used) || reset <= now) {
            return std::nullopt;
        }
        return PumpClaudeUsage{.blockStart = reset - blockLength,
                               .resetsAt = reset,
                               .usedPercent = used,
                               .hasLogs = true,
                               .weekUsedPercent = weekPercentage(reading)};
    } catch (const JsonError&) {
        return std::nullopt; // then the estimate stands
    }
}

} // namespace FellowCore
