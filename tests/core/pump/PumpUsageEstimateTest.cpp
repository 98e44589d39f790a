#include "core/pump/PumpUsageEstimate.h"

#include "tests/core/pump/UsageHome.h"

#include <gmock/gmock.h>

#include <limits>

namespace FellowCore {
namespace {

constexpr std::int64_t budget = 1000;

/// One message of 10 tokens at each of the times of Wednesday, 4 March 2026.
PumpUsageRecords recordsAt(const std::vector<std::string>& times) {
    PumpUsageRecords records;
    for (std::size_t index = 0; index < times.size(); ++index) {
        records.add(pumpRecordKey(std::to_string(index)), "a", {wednesday(times[index]), {.input = 10}});
    }
    return records;
}

TEST(PumpUsageEstimate, BlocksOpenOnTheHourAndLastFiveHours) {
    struct Case {
        const char* fault;
        std::vector<std::string> activity;
        std::string now;
        std::optional<std::string> start;
        std::int64_t tokens;
    };
    const Case cases[] = {
        {"it opens when the activity does", {"09:40:00"}, "10:00:00", "09:00:00", 10},
        {"it ends a minute early", {"09:40:00", "13:59:00"}, "13:59:30", "09:00:00", 20},
        {"it ends late", {"09:40:00", "14:00:00"}, "14:00:00", "14:00:00", 10},
        {"the next one opens at once", {"09:40:00", "15:05:00"}, "15:05:00", "15:00:00", 10},
        {"a gap ends it", {"09:40:00", "13:50:00"}, "13:55:00", "09:00:00", 20},
        {"it goes on after its end", {"09:40:00"}, "14:00:00", std::nullopt, 0},
        {"what is to come counts", {"09:40:00", "09:50:00"}, "09:45:00", "09:00:00", 10},
        {"blocks are not chained",
         {"01:10:00", "05:59:00", "06:30:00", "10:30:00"},
         "10:59:00",
         "06:00:00",
         20},
        {"no activity is a block", {}, "12:00:00", std::nullopt, 0},
    };
    const Instant monday = wednesday("00:00:00") - 2 * 86400;
    for (const Case& one : cases) {
        PumpUsageRecords records = recordsAt(one.activity);
        const PumpClaudeUsage usage =
            estimatedUsage(records, Calendar::utc(), wednesday(one.now), monday, budget);
        const auto start = one.start ? std::optional(wednesday(*one.start)) : std::nullopt;
        EXPECT_EQ(usage.blockStart, start) << one.fault;
        EXPECT_EQ(usage.resetsAt, start ? std::optional(*start + 5 * 3600) : std::nullopt) << one.fault;
        EXPECT_EQ(usage.blockTokens, one.tokens) << one.fault;
        EXPECT_DOUBLE_EQ(usage.usedPercent, static_cast<double>(one.tokens) / 10) << one.fault;
        EXPECT_EQ(usage.hasLogs, !one.activity.empty()) << one.fault;
        EXPECT_FALSE(usage.isExact()) << one.fault;
    }
}

TEST(PumpUsageEstimate, HoursAndWeeksAreThoseOfTheUsersClocks) {
    const auto in = [](const char* zone) { return Calendar::inTimeZone(zone).value(); };
    EXPECT_EQ(startOfHour(in("Asia/Kolkata"), wednesday("09:40:00")), wednesday("09:30:00"));
    EXPECT_EQ(startOfHour(in("Asia/Kathmandu"), wednesday("09:10:00")), wednesday("08:15:00"));
    EXPECT_EQ(startOfHour(in("America/New_York"), wednesday("09:40:00")), wednesday("09:00:00"));
    EXPECT_EQ(startOfHour(Calendar::utc(), Instant::fromUnix(-1)), Instant::fromUnix(-3600));

    const Instant monday = wednesday("00:00:00") - 2 * 86400;
    EXPECT_EQ(startOfWeek(Calendar::utc(), wednesday("12:00:00")), monday);
    EXPECT_EQ(startOfWeek(Calendar::utc(), monday), monday);
    EXPECT_EQ(startOfWeek(Calendar::utc(), monday - 0.5), monday - 7 * 86400) << "Sunday ends the week";
    EXPECT_EQ(startOfWeek(in("Asia/Kolkata"), monday - 5400), monday - 19800) << "Monday has begun there";
    // The clocks went forward on Sunday the 8th, between that Monday and the one after.
    const Instant tuesday = instantFromIso8601("2026-03-10T12:00:00Z").value();
    EXPECT_EQ(startOfWeek(in("America/New_York"), tuesday), instantFromIso8601("2026-03-09T04:00:00Z"));
    const Instant never{std::numeric_limits<double>::infinity()};
    EXPECT_EQ(startOfWeek(Calendar::utc(), never), never);
}

// Blocks follow from all activity since the first, so the pruned part of it must still open and close them.
TEST(PumpUsageEstimate, PruningTakesTokensAndLeavesBlocks) {
    const std::vector<std::string> activity{"00:20:00", "04:50:00", "05:10:00", "09:59:00", "10:30:00"};
    const Instant limit = wednesday("10:00:00");
    const Instant now = wednesday("10:45:00");
    PumpUsageRecords whole = recordsAt(activity);
    PumpUsageRecords pruned = recordsAt(activity);
    EXPECT_FALSE(pruned.prune(wednesday("00:20:00"), Calendar::utc()));
    EXPECT_TRUE(pruned.prune(limit, Calendar::utc()));
    EXPECT_FALSE(pruned.prune(limit, Calendar::utc()));
    EXPECT_THAT(pruned.merged(), testing::SizeIs(1));
    EXPECT_THAT(pruned.hours(), testing::SizeIs(4)) << "each hour once";
    const auto before = estimatedUsage(whole, Calendar::utc(), now, limit, budget);
    const auto after = estimatedUsage(pruned, Calendar::utc(), now, limit, budget);
    EXPECT_EQ(before.blockStart, limit);
    EXPECT_EQ(after, before);
    pruned.forget({"a"});
    EXPECT_FALSE(estimatedUsage(pruned, Calendar::utc(), now, limit, budget).hasLogs);
}

TEST(PumpUsageRecords, KeysAreHashesInSmallLetters) {
    // The SHA-256 of "abc", from FIPS 180-4's examples.
    const std::string hex = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
    EXPECT_EQ(hexText(pumpRecordKey("abc")), hex);
    EXPECT_EQ(pumpRecordKeyFromHex(hex), pumpRecordKey("abc"));
    for (const std::string& bad : {std::string(), hex.substr(1), hex + "0", "g" + hex.substr(1)}) {
        EXPECT_EQ(pumpRecordKeyFromHex(bad), std::nullopt) << bad;
    }
}

} // namespace
} // namespace FellowCore
