#include "tests/app/PumpHarness.h"

#include <atomic>
#include <semaphore>

namespace PumpHarness {
namespace {

using FellowCore::PumpPlan;
using Testing::runFor;

/// A reader that waits for the test before it answers with the budget it was given.
class HeldReader {
public:
    std::atomic<int> begun = 0;
    std::atomic<int> loading = 0; ///< how many answers say that there is more
    std::counting_semaphore<64> gate{0};

    PumpUsageService::MakeReader maker() {
        return [this] {
            return [this](FellowCore::Instant now, const PumpPreferences& preferences) {
                ++begun;
                gate.acquire();
                PumpUsageSnapshot read{.at = now};
                read.claude.blockTokens = preferences.fiveHourBudget;
                read.isLoading = loading-- > 0;
                return read;
            };
        };
    }
};

class PumpUsageServiceTest : public testing::Test {
protected:
    ~PumpUsageServiceTest() override { reader.gate.release(32); } // so that the queue can end

    bool begins(int readings) {
        return waitUntil([&] { return reader.begun == readings; });
    }
    bool answers() {
        reader.gate.release();
        return waitUntil([&] { return !service.isReading(); });
    }

    Desk desk;
    HeldReader reader;
    PumpUsageService service{desk.services, reader.maker()};
};

TEST_F(PumpUsageServiceTest, NothingIsReadWhileNobodyCanSeeIt) {
    service.refresh();
    service.apply(PumpPreferences(PumpPlan::max5x));
    runFor(50);
    EXPECT_EQ(reader.begun, 0);
    service.setInspected(true);
    ASSERT_TRUE(begins(1));
    service.setDesktopActive(true); // asks once more, which waits for the one that runs
    service.setInspected(false);
    EXPECT_TRUE(answers());
    EXPECT_EQ(service.snapshot()->claude.blockTokens, 220000);
    EXPECT_TRUE(begins(2));
}

TEST_F(PumpUsageServiceTest, HoweverOftenItIsAskedDuringAReadingOneMoreFollows) {
    service.setDesktopActive(true);
    ASSERT_TRUE(begins(1));
    for (int i = 0; i < 5; ++i) {
        service.refresh();
    }
    ASSERT_TRUE(answers());
    ASSERT_TRUE(begins(2));
    ASSERT_TRUE(answers());
    runFor(2 * PumpUsageService::followUpMilliseconds);
    EXPECT_EQ(reader.begun, 2);
}

TEST_F(PumpUsageServiceTest, AnOlderReadingNeverOverwritesAChangeOfPlan) {
    std::vector<std::int64_t> shown;
    QObject::connect(&service, &PumpUsageService::changed, &service, [&] {
        if (service.snapshot()) {
            shown.push_back(service.snapshot()->claude.blockTokens);
        }
    });
    service.setDesktopActive(true);
    ASSERT_TRUE(begins(1));
    PumpPreferences wanted(PumpPlan::max20x);
    wanted.setCustomBudget(5'000'000'000);
    service.apply(wanted);
    reader.gate.release();
    ASSERT_TRUE(begins(2));
    ASSERT_TRUE(answers());
    ASSERT_FALSE(shown.empty());
    EXPECT_THAT(shown, testing::Each(1'000'000'000)) << "the first reading was made for another budget";
    EXPECT_EQ(PumpPreferences::load(desk.preferences), service.preferences());
}

TEST_F(PumpUsageServiceTest, ALongHistoryIsReadToItsEndAndNoFurther) {
    reader.loading = 3;
    reader.gate.release(10);
    service.setDesktopActive(true);
    ASSERT_TRUE(begins(4));
    runFor(2 * PumpUsageService::followUpMilliseconds);
    EXPECT_EQ(reader.begun, 4);
    EXPECT_FALSE(service.snapshot()->isLoading);
}

TEST_F(PumpUsageServiceTest, WhatComesAfterHidingIsNotShown) {
    reader.loading = 100;
    service.setDesktopActive(true);
    ASSERT_TRUE(begins(1));
    service.setDesktopActive(false);
    ASSERT_TRUE(answers());
    runFor(2 * PumpUsageService::followUpMilliseconds);
    EXPECT_FALSE(service.snapshot());
    EXPECT_EQ(reader.begun, 1);
}

TEST(PumpUsageReading, TheUsersOwnLogsAndStatusLineAreRead) {
    Desk desk;
    const std::string now = FellowCore::iso8601Text(desk.system.time.wall());
    TestSupport::writeBytes(
        desk.home / ".claude/projects/p/s.jsonl",
        R"({"type":"assistant","timestamp":")" + now +
            R"(","message":{"id":"m","role":"assistant","usage":{"input_tokens":2000,"output_tokens":2400}}})"
            "\n");
    PumpUsageService service(desk.services, pumpUsageReader(desk.services));
    service.setDesktopActive(true);
    const auto claude = [&] { return service.snapshot()->claude; };
    ASSERT_TRUE(waitUntil([&] { return service.snapshot() && !service.isReading(); }));
    EXPECT_EQ(claude().usedPercent, 10);
    EXPECT_FALSE(claude().isExact());
    EXPECT_TRUE(std::filesystem::exists(desk.folders.character("pump") / "usage-cache.json"));
    const double later = desk.system.time.wall().toUnix() + 600;
    TestSupport::writeBytes(desk.folders.deskSprites() / "claude-rate-limits.json",
                            R"({"five_hour":{"used_percentage":37,"resets_at":)" + std::to_string(later) +
                                R"(},"seven_day":{"used_percentage":60}})");
    service.refresh();
    ASSERT_TRUE(waitUntil([&] { return claude().isExact(); }));
    EXPECT_EQ(claude().usedPercent, 37);
    desk.system.time.advance(601);
    service.refresh();
    EXPECT_TRUE(waitUntil([&] { return !claude().isExact(); })) << "a window that has passed says nothing";
}

} // namespace
} // namespace PumpHarness
