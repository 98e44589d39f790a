#include "tests/app/PumpHarness.h"

namespace PumpHarness {
namespace {

using enum PumpAgentPhase;
using testing::ElementsAre;
using testing::IsEmpty;
using Testing::runFor;

class PumpAgentServiceTest : public testing::Test {
protected:
    PumpAgentServiceTest() {
        desk.connectAgent(PumpProvider::claude);
        desk.connectAgent(PumpProvider::codex);
        service.onNeedsYou = [this](const std::vector<PumpAgentEvent>& events) {
            for (const PumpAgentEvent& event : events) {
                alerts.push_back(event.key());
            }
        };
        QObject::connect(&service, &PumpAgentService::changed, &service, [this] { ++looks; });
    }

    bool looksAgain() {
        return waitUntil([this, before = looks] { return looks > before; });
    }
    Log sessions() const {
        Log names;
        for (const PumpAgentEvent& session : service.sessions()) {
            names.push_back(session.key() + " " + std::string(rawValue(session.event)));
        }
        return names;
    }

    AgentDesk desk;
    PumpAgentService service{desk.services};
    Log alerts;
    int looks = 0;
};

TEST_F(PumpAgentServiceTest, HistoryAlertsNobodyAndEachNewCallAlertsOnce) {
    desk.write(desk.line(PumpProvider::claude, needsYou, "old", 100));
    service.setDesktopActive(true);
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(sessions(), ElementsAre("claude:old needs_you"));
    EXPECT_THAT(alerts, IsEmpty());
    const std::string call = desk.line(PumpProvider::codex, needsYou, "new", 0);
    desk.write(call);
    ASSERT_TRUE(waitUntil([&] { return !alerts.empty(); })) << "the watched file was replaced";
    desk.write(call); // written twice
    desk.write(desk.line(PumpProvider::codex, needsYou, "new", 0, "/home/u/other"));
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(alerts, ElementsAre("codex:new"));
    desk.system.time.advance(1);
    desk.write(desk.line(PumpProvider::codex, working, "new", 0));
    desk.write(desk.line(PumpProvider::codex, needsYou, "new", 0));
    ASSERT_TRUE(waitUntil([&] { return alerts.size() == 2; })) << "it was answered, and asks anew";
}

TEST_F(PumpAgentServiceTest, AnAgentThatIsNotConnectedHasNoSessions) {
    desk.write(desk.line(PumpProvider::claude, working, "a", 10));
    desk.write(desk.line(PumpProvider::codex, working, "b", 20));
    service.setInspected(true);
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(sessions(), ElementsAre("claude:a working", "codex:b working"));
    desk.disconnectAgent(PumpProvider::codex);
    service.refresh();
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(sessions(), ElementsAre("claude:a working"));
    desk.write(desk.line(PumpProvider::codex, needsYou, "b", 0)); // a helper that still runs
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(alerts, IsEmpty());
    PumpAgentService restarted(desk.services);
    bool looked = false;
    QObject::connect(&restarted, &PumpAgentService::changed, &restarted, [&] { looked = true; });
    restarted.setDesktopActive(true);
    ASSERT_TRUE(waitUntil([&] { return looked; }));
    EXPECT_EQ(restarted.sessions().size(), 1U) << "its lines are still in the file";
}

TEST_F(PumpAgentServiceTest, StatesExpireWithoutAnyEvent) {
    desk.write(desk.line(PumpProvider::claude, done, "a", 0));
    service.setDesktopActive(true);
    ASSERT_TRUE(looksAgain());
    EXPECT_EQ(service.urgent()->sessionID, "a");
    desk.system.time.advance(601);
    service.refresh();
    ASSERT_TRUE(looksAgain());
    EXPECT_FALSE(service.urgent());
}

TEST_F(PumpAgentServiceTest, NothingIsLookedAtWhileNobodyCanSeeIt) {
    service.setDesktopActive(true);
    ASSERT_TRUE(looksAgain());
    service.setDesktopActive(false);
    desk.write(desk.line(PumpProvider::claude, needsYou, "a", 0));
    service.refresh();
    runFor(100);
    EXPECT_EQ(looks, 1);
    service.setDesktopActive(true);
    ASSERT_TRUE(waitUntil([&] { return !alerts.empty(); })) << "what came meanwhile still wants the user";
}

TEST_F(PumpAgentServiceTest, OnlyTheEndOfAHugeFileIsRead) {
    const std::string later = desk.line(PumpProvider::claude, working, "later", 5);
    std::string old = desk.line(PumpProvider::claude, working, "first", 5);
    while (old.size() < 1'000'000) {
        old += "\n" + later;
    }
    desk.write(old);
    desk.write(desk.line(PumpProvider::claude, done, "last", 1));
    service.setDesktopActive(true);
    ASSERT_TRUE(looksAgain());
    EXPECT_THAT(sessions(), ElementsAre("claude:last done", "claude:later working"));
}

} // namespace
} // namespace PumpHarness
