#include "core/base/Json.h"
#include "core/pump/PumpUsageCache.h"
#include "core/pump/PumpUsageEstimate.h"
#include "fuzz/Require.h"

#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

/// Dates are written in decimal, so that what was read and written once stays as it is.
void requireStable(const PumpUsageCache& cache) {
    const std::string text =
        PumpUsageCache::encoded(cache.cursors, cache.records, cache.codex, cache.codexPath);
    const PumpUsageCache again = PumpUsageCache::decoded(text);
    require(again.cursors == cache.cursors);
    if (cache.codex && cache.codexPath) {
        require(again.codex == cache.codex && again.codexPath == cache.codexPath);
    }
}

} // namespace

/// Whatever the bytes are, they are a cache that can be worked with and written again, or a `JsonError`.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Calendar calendar = Calendar::utc();
    const Instant now = Instant::fromUnix(1'772'600'000);
    try {
        PumpUsageCache cache = PumpUsageCache::decoded({reinterpret_cast<const char*>(data), size});
        requireStable(cache);
        const Instant week = startOfWeek(calendar, now);
        const PumpClaudeUsage before = estimatedUsage(cache.records, calendar, now, week, 44'000);
        require(before.blockTokens >= 0 && before.weekTokens >= 0);
        cache.records.prune(week - PumpClaudeUsage::blockLength, calendar);
        const PumpClaudeUsage after = estimatedUsage(cache.records, calendar, now, week, 44'000);
        require(after.hasLogs == before.hasLogs && after.blockTokens >= 0 && after.weekTokens >= 0);
    } catch (const JsonError&) {
        // Refused, which is an answer.
    }
    return 0;
}
