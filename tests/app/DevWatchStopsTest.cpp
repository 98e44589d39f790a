#include "tests/app/DevWatchHarness.h"

namespace {

using namespace DevWatchHarness;
using testing::ElementsAre;
using testing::IsEmpty;

const QString stopSent = QStringLiteral("Stop sent. Waiting for exit…");

TEST(DevWatchStops, EndsExactlyTheConfirmedServerPolitely) {
    WatchDesk desk;
    desk.comeOut();
    // It needs a moment to tidy up.
    Program server(QStringLiteral("def leave(*_): time.sleep(0.4); signal.signal(signal.SIGTERM, "
                                  "signal.SIG_DFL); os.kill(os.getpid(), signal.SIGTERM)\n"
                                  "signal.signal(signal.SIGTERM, leave)"));
    Program bystander;
    desk.watch.stop(desk.confirm(server));
    EXPECT_EQ(desk.row(server)->stage, DevWatchStage::sending);
    ASSERT_TRUE(desk.reaches(server, DevWatchStage::waiting));
    EXPECT_EQ(desk.row(server)->note, stopSent);
    EXPECT_TRUE(desk.dropped(server));
    EXPECT_EQ(server.endedBy(), SIGTERM);
    EXPECT_TRUE(bystander.isRunning());
    ASSERT_TRUE(desk.lists(bystander));
    EXPECT_EQ(desk.row(bystander)->stage, DevWatchStage::running);
    EXPECT_THAT(desk.notices, IsEmpty());
}

TEST(DevWatchStops, OffersForceOnlyOnceTheGraceIsOver) {
    WatchDesk desk;
    desk.comeOut();
    Program stubborn(QStringLiteral("signal.signal(signal.SIGTERM, lambda *_: say('no'))"));
    const auto confirmed = desk.confirm(stubborn);
    desk.watch.force(confirmed);
    EXPECT_EQ(desk.row(stubborn)->stage, DevWatchStage::running) << "force comes second";
    desk.watch.stop(confirmed);
    desk.watch.stop(confirmed);
    ASSERT_TRUE(desk.reaches(stubborn, DevWatchStage::waiting));
    EXPECT_EQ(stubborn.nextLine(), QStringLiteral("no"));
    desk.watch.stop(confirmed);
    desk.watch.force(confirmed);
    Testing::runFor(400);
    EXPECT_EQ(desk.row(stubborn)->stage, DevWatchStage::waiting);
    EXPECT_FALSE(stubborn.hasSpoken()) << "it was asked twice";
    desk.system.time.advance(5);
    ASSERT_TRUE(desk.reaches(stubborn, DevWatchStage::forceable));
    desk.watch.force(confirmed);
    EXPECT_TRUE(desk.dropped(stubborn));
    EXPECT_EQ(stubborn.endedBy(), SIGKILL);
}

TEST(DevWatchStops, TellsRefusalsAndSignalsNothing) {
    const QString onSignal =
        QStringLiteral("def act(*_): %1; say('done')\nsignal.signal(signal.SIGUSR1, act)");
    const std::string changed = "Process changed. Nothing stopped.";
    struct Case {
        const char* fault;
        QString act; ///< of the program between the click and the signal
        std::string told;
        bool staysListed;
    };
    const Case cases[] = {
        {"signals what does not listen any more", QStringLiteral("server.close()"), changed, false},
        {"signals what works elsewhere by now", QStringLiteral("os.chdir('/usr')"), changed, true},
        {"signals what calls itself otherwise", QStringLiteral("open('/proc/self/comm', 'w').write('batch')"),
         changed, true},
        {"signals what became part of the session",
         QStringLiteral("open('/proc/self/comm', 'w').write('Xorg')"), "Could not stop this process", true},
    };
    for (const Case& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        WatchDesk desk;
        desk.comeOut();
        Program server(onSignal.arg(testCase.act));
        const auto confirmed = desk.confirm(server);
        server.tell(SIGUSR1);
        desk.watch.stop(confirmed);
        const auto isNoted = [&] {
            return desk.row(server) != nullptr && desk.row(server)->note.toStdString() == testCase.told;
        };
        EXPECT_TRUE(waitUntil([&] { return !desk.notices.empty() || isNoted(); }));
        if (testCase.staysListed) {
            EXPECT_EQ(desk.row(server)->stage, DevWatchStage::running);
        } else {
            EXPECT_TRUE(desk.dropped(server));
            EXPECT_THAT(desk.notices, ElementsAre(testCase.told)) << "its row went before it could be read";
        }
        EXPECT_TRUE(server.isRunning());
    }
}

TEST(DevWatchStops, TakesNoOtherProcessForTheConfirmedOne) {
    WatchDesk desk;
    desk.comeOut();
    Program server;
    Program other;
    const DevWatchProcessConfirmation real = desk.confirm(server);
    const FellowCore::DevWatchListener listener{real.process, real.port};
    auto earlier = listener;
    earlier.process.identity.startedAtMicroseconds -= 1;
    auto elsewhere = listener;
    elsewhere.port = other.port();
    auto system = listener;
    system.process.identity.pid = 1;
    auto everyone = listener;
    everyone.process.identity.pid = -1;
    for (const auto& forged : {earlier, elsewhere, system, everyone}) {
        desk.watch.stop(DevWatchProcessConfirmation(forged));
    }
    ASSERT_TRUE(desk.lists(server));
    Testing::runFor(300);
    EXPECT_TRUE(server.isRunning());
    EXPECT_TRUE(other.isRunning());
    EXPECT_EQ(desk.row(server)->stage, DevWatchStage::running);
}

TEST(DevWatchStops, OffersNothingOnWhatIsProtected) {
    WatchDesk desk;
    desk.comeOut();
    Program session(QStringLiteral("open('/proc/self/comm', 'w').write('dbus-daemon')"));
    ASSERT_TRUE(desk.lists(session));
    EXPECT_EQ(desk.row(session)->refusal, FellowCore::DevWatchSafetyRefusal::protectedProcess);
    desk.watch.stop(desk.confirm(session));
    ASSERT_TRUE(desk.reaches(session, DevWatchStage::running));
    EXPECT_EQ(desk.row(session)->note, QStringLiteral("Could not stop this process"));
    EXPECT_TRUE(session.isRunning());
    desk.watch.setPanelOpen(false);
    EXPECT_EQ(desk.row(session)->note, QString()) << "what was read is told again and again";
}

TEST(DevWatchStops, AsksAProcessOnceHoweverManyPortsItHas) {
    WatchDesk desk;
    desk.comeOut();
    Program server(QStringLiteral("signal.signal(signal.SIGTERM, lambda *_: say('asked'))\n"
                                  "second = socket.create_server(('127.0.0.1', 0))\n"
                                  "say(str(second.getsockname()[1]))"));
    const auto first = static_cast<std::uint16_t>(server.nextLine().toInt());
    const std::uint16_t second = server.port(); // told first
    ASSERT_TRUE(desk.lists(server) && desk.row(server.pid(), first));
    const DevWatchProcessConfirmation byFirst(desk.row(server.pid(), first)->listener);
    const DevWatchProcessConfirmation bySecond(desk.row(server.pid(), second)->listener);
    desk.watch.stop(byFirst);
    desk.watch.stop(bySecond);
    EXPECT_EQ(server.nextLine(), QStringLiteral("asked"));
    ASSERT_TRUE(waitUntil([&] { return desk.row(server.pid(), second)->note == stopSent; }));
    EXPECT_EQ(desk.row(server.pid(), second)->stage, DevWatchStage::waiting);
    desk.system.time.advance(5);
    ASSERT_TRUE(waitUntil([&] { return desk.row(server.pid(), first)->stage == DevWatchStage::forceable; }));
    EXPECT_EQ(desk.row(server.pid(), second)->stage, DevWatchStage::waiting)
        << "force was not confirmed here";
    desk.watch.stop(bySecond);
    desk.watch.force(bySecond);
    Testing::runFor(300);
    EXPECT_FALSE(server.hasSpoken());
    EXPECT_TRUE(server.isRunning());
}

TEST(DevWatchStops, NoticesAServerThatComesBack) {
    WatchDesk desk;
    desk.comeOut();
    // The supervisor starts a new server on the port for as long as it lives.
    Program supervisor(QStringLiteral("port = server.getsockname()[1]\n"
                                      "server.close()\n"
                                      "def serve():\n"
                                      "    child = os.fork()\n"
                                      "    if child: return child\n"
                                      "    follow()\n"
                                      "    server = socket.create_server(('127.0.0.1', port))\n"
                                      "    while True: signal.pause()\n"
                                      "if os.fork() == 0:\n"
                                      "    follow()\n"
                                      "    while True: os.waitpid(serve(), 0)\n"
                                      "class Told: getsockname = lambda self: (0, port)\n"
                                      "server = Told()"));
    const auto found = [&]() -> const DevWatchServerRow* {
        const auto& servers = desk.watch.view().servers;
        const auto row = std::ranges::find(servers, supervisor.port(),
                                           [](const DevWatchServerRow& each) { return each.listener.port; });
        return row == servers.end() ? nullptr : &*row;
    };
    ASSERT_TRUE(waitUntil([&] { return found() != nullptr; }));
    const auto first = found()->listener.process.identity;
    desk.watch.stop(DevWatchProcessConfirmation(found()->listener));
    EXPECT_TRUE(waitUntil([&] { return !desk.notices.empty(); }, 5000));
    EXPECT_THAT(desk.notices, ElementsAre("python3 came back. Something restarts it automatically."));
    ASSERT_NE(found(), nullptr);
    EXPECT_NE(found()->listener.process.identity, first);
    EXPECT_EQ(found()->stage, DevWatchStage::running) << "the new one was never asked";
}

TEST(DevWatchStops, TakesASiblingOnTheSamePortForNoneThatCameBack) {
    Program server(QStringLiteral("if os.fork() == 0:\n"
                                  "    follow()\n"
                                  "    signal.pause()"));
    WatchDesk desk;
    desk.comeOut();
    const auto rows = [&] {
        return std::ranges::count(desk.watch.view().servers, server.port(),
                                  [](const DevWatchServerRow& row) { return row.listener.port; });
    };
    ASSERT_TRUE(waitUntil([&] { return rows() == 2; }));
    const auto child = std::ranges::find_if(desk.watch.view().servers, [&](const DevWatchServerRow& row) {
        return row.listener.port == server.port() && row.listener.process.identity.pid != server.pid();
    });
    desk.watch.stop(DevWatchProcessConfirmation(child->listener));
    ASSERT_TRUE(waitUntil([&] { return rows() == 1; }));
    Testing::runFor(400);
    EXPECT_TRUE(server.isRunning());
    EXPECT_THAT(desk.notices, IsEmpty());
}

TEST(DevWatchStops, LeavesTheDesktopWithAStopUnderWay) {
    Program server(QStringLiteral("signal.signal(signal.SIGTERM, signal.SIG_IGN)"));
    {
        WatchDesk desk;
        desk.comeOut();
        desk.watch.stop(desk.confirm(server));
        desk.watch.setDesktopActive(false);
        Testing::runFor(200);
        EXPECT_THAT(desk.watch.view().servers, IsEmpty());
        desk.watch.setDesktopActive(true);
        ASSERT_TRUE(desk.lists(server));
        EXPECT_EQ(desk.row(server)->stage, DevWatchStage::running);
        EXPECT_EQ(desk.row(server)->note, QString());
        desk.watch.stop(desk.confirm(server));
    }
    EXPECT_TRUE(server.isRunning());
}

} // namespace
