#include "platform/KeepAwake.h"

#include "platform/linux/BusKeepAwake.h"
#include "tests/support/TestBus.h"
#include "tests/support/Waiting.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>

#include <map>

namespace {

using Testing::runFor;
using Testing::TestBus;
using Testing::waitUntil;

const QString login = QStringLiteral("org.freedesktop.login1");
const QString screenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");

/// A screen saver or an inhibit portal, which lets go of what a caller holds once that is off the bus, as
/// the desktops' own do.
class ScreenService final : public QDBusVirtualObject {
public:
    ScreenService(const QDBusConnection& bus, const QString& name) : bus_(bus), name_(name) {
        callers_.setConnection(bus_);
        callers_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(&callers_, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& caller) {
            std::erase_if(holds, [&](const auto& hold) { return hold.second == caller; });
        });
        bus_.registerVirtualObject(QStringLiteral("/org"), this, QDBusConnection::SubPath);
        bus_.registerService(name_);
    }
    ~ScreenService() override {
        bus_.unregisterObject(QStringLiteral("/org"), QDBusConnection::UnregisterTree);
        bus_.unregisterService(name_);
        QDBusConnection::disconnectFromBus(bus_.name());
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.member() == QStringLiteral("Inhibit")) {
            asked.push_back(message);
            message.setDelayedReply(true);
            if (answers)
                answer();
            return true;
        }
        if (message.member() == QStringLiteral("UnInhibit"))
            return holds.erase(message.arguments().value(0).toUInt()) == 1;
        if (message.member() == QStringLiteral("Close"))
            return holds.erase(message.path().section(QLatin1Char('/'), -1).toUInt()) == 1;
        return false;
    }
    /// Answers the oldest question.
    void answer() {
        const QDBusMessage message = asked.front();
        asked.erase(asked.begin());
        holds[++last_] = message.service();
        callers_.addWatchedService(message.service());
        const QVariant cookie =
            name_ == portal ? QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/%1").arg(last_)))
                            : QVariant(last_);
        bus_.send(message.createReply(cookie));
    }

    std::map<uint, QString> holds; ///< by cookie, who holds
    std::vector<QDBusMessage> asked;
    bool answers = true;

private:
    QDBusConnection bus_;
    QString name_;
    QDBusServiceWatcher callers_;
    uint last_ = 0;
};

class KeepAwakeTest : public testing::Test {
protected:
    ~KeepAwakeTest() override {
        if (logind.state() != QProcess::NotRunning)
            Testing::end(logind);
    }
    void startLogind() {
        system.startMock(logind, {QStringLiteral("--template"), QStringLiteral("logind")}, login);
    }
    /// What logind waits for, as "what who mode".
    std::vector<std::string> inhibitors() {
        const QDBusMessage reply =
            system.connection(QStringLiteral("tester"))
                .call(QDBusMessage::createMethodCall(login, QStringLiteral("/org/freedesktop/login1"),
                                                     login + QStringLiteral(".Manager"),
                                                     QStringLiteral("ListInhibitors")));
        const auto list = reply.arguments().constFirst().value<QDBusArgument>();
        std::vector<std::string> found;
        list.beginArray();
        while (!list.atEnd()) {
            QString what;
            QString who;
            QString why;
            QString mode;
            uint uid = 0;
            uint pid = 0;
            list.beginStructure();
            list >> what >> who >> why >> mode >> uid >> pid;
            list.endStructure();
            found.push_back((what + QLatin1Char(' ') + who + QLatin1Char(' ') + mode).toStdString());
        }
        return found;
    }
    std::unique_ptr<ScreenService> service(const QString& name) {
        return std::make_unique<ScreenService>(session.connection(name + QString::number(++connections)),
                                               name);
    }
    std::unique_ptr<Platform::KeepAwake> hold() {
        return std::make_unique<Platform::BusKeepAwake>(system.connection(QStringLiteral("ours")),
                                                        session.connection(QStringLiteral("ours")));
    }

    const std::vector<std::string> held{"idle:sleep Deskfellow block"};
    TestBus system;
    TestBus session;
    QProcess logind;
    int connections = 0;
};

TEST_F(KeepAwakeTest, HoldsTheScreenAndTheMachineUntilItIsLetGo) {
    startLogind();
    const auto saver = service(screenSaver);
    auto awake = hold();
    EXPECT_FALSE(awake->isHeld()) << "nobody has answered yet";
    ASSERT_TRUE(
        waitUntil([&] { return saver->holds.size() == 1 && inhibitors() == held && awake->isHeld(); }));

    QProcess child; // started while it is held: what it inherits would hold on
    child.start(QStringLiteral("sleep"), {QStringLiteral("30")});
    ASSERT_TRUE(child.waitForStarted());
    awake.reset();
    EXPECT_TRUE(waitUntil([&] { return saver->holds.empty(); }));
    EXPECT_TRUE(waitUntil([&] { return inhibitors().empty(); }));
    child.kill();
    child.waitForFinished();
}

TEST_F(KeepAwakeTest, AnAnswerThatComesTooLateIsGivenBack) {
    const auto saver = service(screenSaver);
    saver->answers = false;
    auto awake = hold();
    ASSERT_TRUE(waitUntil([&] { return saver->asked.size() == 1; }));
    awake.reset();
    runFor(30);
    saver->answer();
    ASSERT_EQ(saver->holds.size(), 1U);
    EXPECT_TRUE(waitUntil([&] { return saver->holds.empty(); })) << "held for ever by nobody";

    startLogind();
    awake = hold();
    awake.reset(); // before logind could answer
    runFor(200);
    EXPECT_TRUE(waitUntil([&] { return inhibitors().empty(); }));
}

TEST_F(KeepAwakeTest, AServiceThatIsRestartedIsAskedAgain) {
    startLogind();
    auto saver = service(screenSaver);
    const auto awake = hold();
    ASSERT_TRUE(waitUntil([&] { return saver->holds.size() == 1 && inhibitors() == held; }));

    saver.reset();
    Testing::end(logind);
    runFor(50);
    saver = service(screenSaver);
    startLogind();
    EXPECT_TRUE(waitUntil([&] { return saver->holds.size() == 1 && inhibitors() == held; }));
}

TEST_F(KeepAwakeTest, ThePortalStandsInForTheScreenSaver) {
    const auto standIn = service(portal);
    auto awake = hold();
    ASSERT_TRUE(waitUntil([&] { return standIn->holds.size() == 1 && awake->isHeld(); }));

    auto saver = service(screenSaver);
    ASSERT_TRUE(waitUntil([&] { return saver->holds.size() == 1 && standIn->holds.empty(); }))
        << "a desktop's own service that starts late goes first";
    saver.reset();
    ASSERT_TRUE(waitUntil([&] { return standIn->holds.size() == 1; }));
    awake.reset();
    EXPECT_TRUE(waitUntil([&] { return standIn->holds.empty(); }));
}

TEST_F(KeepAwakeTest, WithoutAnyServiceItHoldsNothingAndHarmsNothing) {
    const auto lonely = hold();
    const QDBusConnection none(QStringLiteral("nowhere"));
    const Platform::BusKeepAwake alone(none, none);
    runFor(100);
    EXPECT_FALSE(lonely->isHeld());
    EXPECT_FALSE(alone.isHeld());
    const auto saver = service(screenSaver);
    EXPECT_TRUE(waitUntil([&] { return lonely->isHeld(); })) << "the service started after the program";
}

/// Not a test: the program that the next one kills.
TEST(DISABLED_KeepAwakeHolder, HoldsUntilItIsKilled) {
    const auto awake = Platform::keepAwake();
    runFor(30000);
}

TEST_F(KeepAwakeTest, AProgramThatCrashesLetsGo) {
    startLogind();
    const auto saver = service(screenSaver);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), system.address());
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), session.address());
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--gtest_also_run_disabled_tests"),
                   QStringLiteral("--gtest_filter=DISABLED_KeepAwakeHolder.*")});
    ASSERT_TRUE(waitUntil([&] { return saver->holds.size() == 1 && inhibitors() == held; }, 10000));
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(waitUntil([&] { return saver->holds.empty(); }));
    EXPECT_TRUE(waitUntil([&] { return inhibitors().empty(); }));
}

} // namespace
