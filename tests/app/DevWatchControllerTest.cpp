#include "tests/app/DevWatchHarness.h"

#include <unistd.h>

namespace {

using namespace DevWatchHarness;
using FellowCore::DevWatchKind;
using FellowCore::DevWatchProcessListState;
using testing::IsEmpty;

TEST(DevWatchController, ReadsNothingUnlessHeIsOnTheDesktop) {
    WatchDesk desk;
    const Program server;
    desk.watch.setPanelOpen(true);
    desk.watch.refresh();
    Testing::runFor(300);
    EXPECT_EQ(desk.watch.view().list, DevWatchProcessListState::reading);
    EXPECT_THAT(desk.watch.view().servers, IsEmpty());
    desk.watch.setDesktopActive(true);
    EXPECT_TRUE(desk.lists(server));
    desk.watch.refresh(); // on its way when he leaves
    desk.watch.setDesktopActive(false);
    Testing::runFor(300);
    EXPECT_EQ(desk.watch.view().list, DevWatchProcessListState::reading);
    EXPECT_THAT(desk.watch.view().servers, IsEmpty()) << "a late reading was taken in";
    desk.watch.setDesktopActive(true);
    EXPECT_TRUE(desk.lists(server));
}

TEST(DevWatchController, ShowsServersAndBusyProcesses) {
    WatchDesk desk;
    desk.comeOut();
    const Program server({}, QStringLiteral("/usr/share"));
    const Program burner(QStringLiteral("say(str(server.getsockname()[1]))\nwhile True: pass"));
    ASSERT_TRUE(desk.lists(server));
    const DevWatchServerRow seen = *desk.row(server);
    EXPECT_EQ(seen.kind.kind, DevWatchKind::Case::devServer);
    EXPECT_EQ(seen.url, "http://localhost:" + std::to_string(server.port()));
    EXPECT_EQ(seen.listener.process.workingDirectory, "/usr/share");
    EXPECT_EQ(seen.refusal, std::nullopt);
    const auto percent = [&](const Program& program) {
        return desk.row(program) ? desk.row(program)->cpuPercent.value_or(-1) : -1;
    };
    EXPECT_TRUE(waitUntil([&] { return percent(burner) > 10 && percent(server) >= 0; }, 5000));
    EXPECT_LT(percent(server), percent(burner));
    const auto& processes = desk.watch.view().processes;
    EXPECT_TRUE(std::ranges::is_sorted(processes, std::greater<>(), &DevWatchProcessRow::cpuPercent));
    EXPECT_FALSE(std::ranges::any_of(processes, [](const DevWatchProcessRow& row) {
        return row.process.identity.pid == ::getpid();
    })) << "he watches himself";
    EXPECT_EQ(desk.watch.view().list, DevWatchProcessListState::available);
    EXPECT_TRUE(desk.watch.view().systemCPUPercent.has_value());
}

TEST(DevWatchController, MeasuresTwiceOnOpeningAndThenAtItsPace) {
    WatchDesk desk;
    desk.system.time.run();
    desk.watch.setDesktopActive(true);
    ASSERT_TRUE(waitUntil([&] { return desk.watch.view().list == DevWatchProcessListState::available; }));
    const Program server;
    Testing::runFor(200);
    EXPECT_EQ(desk.row(server), nullptr) << "the next look is half a minute away";
    desk.watch.setPanelOpen(true);
    ASSERT_TRUE(waitUntil([&] { return desk.row(server) != nullptr; }));
    EXPECT_EQ(desk.row(server)->cpuPercent, std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return desk.row(server) && desk.row(server)->cpuPercent; }, 2500));
    int readings = 0;
    QObject::connect(&desk.watch, &DevWatchController::changed, [&] { ++readings; });
    Testing::runFor(1500);
    EXPECT_EQ(readings, 0) << "the next look is five seconds away";
}

} // namespace
