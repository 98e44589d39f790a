#include "core/ledger/DayKey.h"
#include "core/ledger/MunshiLedger.h"

#include "tests/core/ledger/LedgerScript.h"

#include <gmock/gmock.h>

#include <limits>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;

TEST(MunshiRollover, CarriesWhatIsUnfinishedAndRemembersItsFirstDay) {
    LedgerScript script;
    script.add("a").add("b").add("ready").done("ready").add("- note").on("2026-03-02");
    EXPECT_EQ(shown(script.ledger), "[ ] a <2026-03-01; [ ] b <2026-03-01 | "
                                    "2026-03-01 - note; 2026-03-01 [x] ready;");
    EXPECT_EQ(script.ledger.today.at(0).day, "2026-03-02");
    script.done("b").on("2026-03-03");
    EXPECT_EQ(shown(script.ledger), "[ ] a <2026-03-01 | 2026-03-02 [x] b <2026-03-01; "
                                    "2026-03-01 - note; 2026-03-01 [x] ready;")
        << "carried again, from the same first day";
    EXPECT_THAT(script.ledger.historyDays(), ElementsAre("2026-03-02", "2026-03-01"));
    script.ledger.carryOver = false;
    script.on("2026-03-04");
    EXPECT_EQ(script.ledger.today.size(), 0);
    EXPECT_EQ(shown(script.ledger.history.at(0)), "[ ] a <2026-03-01") << "not carried, and still unfinished";
    EXPECT_EQ(script.ledger.history.at(0).day, "2026-03-03");
}

TEST(MunshiRollover, CountsTheDaysBetween) {
    const struct {
        const char* fault;
        const char* zone;
        const char* from;
        const char* to;
        std::int64_t gap;
    } cases[] = {
        {"the next day skips none", "Etc/UTC", "2026-03-01T23:59:59Z", "2026-03-02T00:00:00Z", 0},
        {"three days away skips two", "Etc/UTC", "2026-03-01T12:00:00Z", "2026-03-04T01:00:00Z", 2},
        {"over a leap day", "Etc/UTC", "2024-02-28T12:00:00Z", "2024-03-01T12:00:00Z", 1},
        {"over a day of 23 hours", "Europe/Berlin", "2026-03-28T22:59:00Z", "2026-03-29T22:01:00Z", 1},
        {"from a day without a midnight", "America/Sao_Paulo", "2018-11-04T12:00:00Z", "2018-11-05T12:00:00Z",
         0},
        {"a clock set back by a day", "Etc/UTC", "2026-03-02T12:00:00Z", "2026-03-01T12:00:00Z", -2},
    };
    for (const auto& row : cases) {
        const Calendar calendar = Calendar::inTimeZone(row.zone).value();
        MunshiLedger ledger(at(row.from), calendar);
        EXPECT_TRUE(ledger.rollIfNeeded(at(row.to), calendar)) << row.fault;
        EXPECT_EQ(ledger.lastGapDays, row.gap) << row.fault;
        EXPECT_FALSE(ledger.rollIfNeeded(at(row.to), calendar)) << row.fault;
    }
}

TEST(MunshiRollover, FollowsTheZoneAndNotTheHours) {
    const Calendar kolkata = Calendar::inTimeZone("Asia/Kolkata").value();
    const Calendar newYork = Calendar::inTimeZone("America/New_York").value();
    const Instant evening = at("2026-03-01T20:00:00Z");
    MunshiLedger ledger(evening, kolkata);
    EXPECT_EQ(ledger.currentDay, "2026-03-02");
    EXPECT_TRUE(ledger.rollIfNeeded(evening, newYork)) << "the traveller landed in yesterday";
    EXPECT_EQ(ledger.currentDay, "2026-03-01");
    EXPECT_EQ(ledger.lastGapDays, -2);
}

TEST(MunshiRollover, KeepsHistoryAsLongAsItIsTold) {
    const struct {
        const char* fault;
        std::optional<std::int64_t> keepDays;
        const char* left;
    } cases[] = {
        {"the cutoff day stays", 30, "2026-03-31 2026-03-30 2026-03-01"},
        {"one day more", 31, "2026-03-31 2026-03-30 2026-03-01 2026-02-28"},
        {"only the day itself", 0, "2026-03-31"},
        {"less than nothing is nothing", -7, "2026-03-31"},
        {"for ever", std::nullopt, "2026-03-31 2026-03-30 2026-03-01 2026-02-28"},
        {"longer than days have keys", 5'000'000, "2026-03-31 2026-03-30 2026-03-01 2026-02-28"},
        {"longer than numbers go", INT64_MAX, "2026-03-31 2026-03-30 2026-03-01 2026-02-28"},
    };
    for (const auto& row : cases) {
        LedgerScript script;
        script.ledger.keepDays.reset();
        script.on("2026-02-28");
        for (const char* day : {"2026-03-01", "2026-03-30", "2026-03-31", "2026-04-01"}) {
            script.add("- note").on(day);
        }
        script.ledger.keepDays = row.keepDays;
        script.ledger.prune(at("2026-03-31T23:59:59Z"), script.calendar);
        std::string left;
        for (const std::string& day : script.ledger.historyDays()) {
            left += (left.empty() ? "" : " ") + day;
        }
        EXPECT_EQ(left, row.left) << row.fault;
    }
}

TEST(MunshiRollover, AClockThatTellsNoDayChangesNothing) {
    LedgerScript script;
    script.add("a").add("- b").on("2026-03-02");
    const MunshiLedger before = script.ledger;
    for (const double seconds : {std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity(), -1e300, 1e12, 300e9, -70e9}) {
        EXPECT_FALSE(script.ledger.rollIfNeeded(Instant{seconds}, script.calendar)) << seconds;
        script.ledger.prune(Instant{seconds}, script.calendar);
        EXPECT_EQ(script.ledger, before) << seconds;
    }
    MunshiLedger lost(Instant{std::numeric_limits<double>::quiet_NaN()}, script.calendar);
    EXPECT_EQ(lost.currentDay, "");
    EXPECT_TRUE(lost.rollIfNeeded(script.now, script.calendar)) << "and is forgotten once it tells one";
    EXPECT_EQ(lost.lastGapDays, 0);
}

TEST(MunshiRollover, ReadsDayKeysStrictly) {
    for (const char* good : {"2026-03-01", "0000-01-01", "9999-12-31", "2024-02-29"}) {
        const auto day = dayFromKey(good);
        ASSERT_TRUE(day) << good;
        EXPECT_EQ(dayKey(*day), good);
    }
    for (const char* bad : {"", "2026-3-1", "2026-02-29", "2026-13-01", "2026-00-10", "12026-03-01",
                            "-026-03-01", "2026/03/01", "2026-03-01 ", "2026-03-0\xB2", "today"}) {
        EXPECT_FALSE(dayFromKey(bad)) << bad;
        EXPECT_FALSE(daysBetween(bad, "2026-03-01")) << bad;
    }
    EXPECT_EQ(dayKey(CalendarDay(std::chrono::year(10000), std::chrono::January, std::chrono::day(1))), "");
    EXPECT_EQ(dayKey(CalendarDay(std::chrono::year(-1), std::chrono::January, std::chrono::day(1))), "");
}

} // namespace
} // namespace FellowCore
