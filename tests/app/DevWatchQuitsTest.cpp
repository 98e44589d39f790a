#include "tests/app/DevWatchHarness.h"

namespace {

using namespace DevWatchHarness;
using FellowCore::DevWatchSafetyRefusal;

/// A real application with a window.
class Application {
public:
    explicit Application(const Desk& desk, const QString& program = QStringLiteral("xterm")) {
        const std::filesystem::path ready = desk.home / "ready"; // before that it has nothing to hang up on
        process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        process_.start(program,
                       {QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                        QStringLiteral("touch '%1'; exec sleep 60").arg(QString::fromStdString(ready))});
        waitUntil([&] { return std::filesystem::exists(ready); }, 5000);
        pid_ = static_cast<std::int32_t>(process_.processId());
    }
    ~Application() {
        process_.kill();
        process_.waitForFinished();
    }
    /// Also once it has ended.
    std::int32_t pid() const { return pid_; }
    bool isRunning() const { return process_.state() == QProcess::Running; }
    /// Makes it deaf to everything but force.
    void hang() const { ::kill(pid(), SIGSTOP); }

private:
    QProcess process_;
    std::int32_t pid_ = 0;
};

class AppDesk : public WatchDesk {
public:
    AppDesk() { comeOut(); }

    const DevWatchAppRow* app(const Application& application) {
        const auto& rows = watch.view().applications;
        const auto found = std::ranges::find(rows, application.pid(),
                                             [](const DevWatchAppRow& row) { return row.app.identity.pid; });
        return found == rows.end() ? nullptr : &*found;
    }
    bool shows(const Application& application) {
        return waitUntil([&] {
            watch.refresh();
            return app(application) != nullptr;
        });
    }
    bool reachesStage(const Application& application, DevWatchStage stage) {
        return waitUntil([&] { return app(application) && app(application)->stage == stage; });
    }
};

TEST(DevWatchQuits, ClosesTheWindowsOfTheApplicationAlone) {
    AppDesk desk;
    const Application application(desk);
    const Application other(desk);
    ASSERT_TRUE(desk.shows(application) && desk.shows(other));
    EXPECT_EQ(desk.app(application)->refusal, std::nullopt);
    desk.watch.quit(desk.app(application)->app);
    EXPECT_EQ(desk.app(application)->stage, DevWatchStage::sending);
    EXPECT_TRUE(waitUntil([&] { return !application.isRunning(); }));
    EXPECT_TRUE(waitUntil([&] { return desk.app(application) == nullptr; }));
    EXPECT_TRUE(other.isRunning());
    ASSERT_NE(desk.app(other), nullptr);
    EXPECT_EQ(desk.app(other)->stage, DevWatchStage::running);
}

TEST(DevWatchQuits, WarnsBeforeItForcesOneThatDoesNotAnswer) {
    AppDesk desk;
    const Application application(desk);
    ASSERT_TRUE(desk.shows(application));
    const auto app = desk.app(application)->app;
    application.hang();
    desk.watch.forceQuit(app);
    desk.watch.quit(app);
    ASSERT_TRUE(desk.reachesStage(application, DevWatchStage::waiting));
    desk.watch.forceQuit(app);
    desk.system.time.advance(2.9);
    Testing::runFor(400);
    EXPECT_EQ(desk.app(application)->stage, DevWatchStage::waiting);
    EXPECT_TRUE(application.isRunning());
    desk.system.time.advance(0.1);
    ASSERT_TRUE(desk.reachesStage(application, DevWatchStage::forceable));
    EXPECT_EQ(desk.app(application)->note, QStringLiteral("Unsaved work will be lost."));
    desk.watch.forceQuit(app);
    EXPECT_TRUE(waitUntil([&] { return !application.isRunning(); }));
    EXPECT_TRUE(waitUntil([&] { return desk.app(application) == nullptr; }));
}

TEST(DevWatchQuits, ForgetsTheRequestOfAnApplicationThatStays) {
    AppDesk desk;
    const Application application(desk);
    ASSERT_TRUE(desk.shows(application));
    application.hang();
    desk.watch.quit(desk.app(application)->app);
    ASSERT_TRUE(desk.reachesStage(application, DevWatchStage::waiting));
    desk.system.time.advance(DevWatchQuits::memory + 1);
    desk.watch.refresh();
    ASSERT_TRUE(desk.reachesStage(application, DevWatchStage::running));
    desk.watch.forceQuit(desk.app(application)->app);
    Testing::runFor(200);
    EXPECT_TRUE(application.isRunning());
}

TEST(DevWatchQuits, LeavesAloneWhatTheSessionNeedsAndWhatIsAnotherByNow) {
    AppDesk desk;
    const auto program = desk.home / "openbox";
    std::filesystem::copy_file("/usr/bin/xterm", program);
    const Application session(desk, QString::fromStdString(program));
    ASSERT_TRUE(desk.shows(session));
    EXPECT_EQ(desk.app(session)->refusal, DevWatchSafetyRefusal::protectedProcess);
    desk.watch.quit(desk.app(session)->app);
    const auto isRefused = [&](const Application& application) {
        return waitUntil([&] {
            return desk.app(application) &&
                   desk.app(application)->note == QStringLiteral("Could not quit this application");
        });
    };
    EXPECT_TRUE(isRefused(session));
    const Application application(desk);
    ASSERT_TRUE(desk.shows(application));
    auto renamed = desk.app(application)->app;
    renamed.name += "2";
    desk.watch.quit(renamed);
    EXPECT_TRUE(isRefused(application));
    EXPECT_TRUE(session.isRunning() && application.isRunning());
}

} // namespace
