#include "platform/linux/LogindSessionEvents.h"
#include "tests/support/TestBus.h"
#include "tests/support/Waiting.h"

#include <QDBusArgument>

#include <gmock/gmock.h>

#include <cstring>

using Testing::runFor;
using Testing::waitUntil;

namespace {

const QString login = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString mockInterface = QStringLiteral("org.freedesktop.DBus.Mock");

/// A mock logind with one session, and the session bus on which screen savers speak.
class SessionEventsTest : public testing::Test {
protected:
    void SetUp() override {
        qputenv("XDG_SESSION_ID", "c1");
        startLogind();
        events.onWillSleep = [this] {
            inhibitedInCallback = inhibitors();
            note("sleep");
        };
        events.onDidWake = [this] { note("wake"); };
        events.onLocked = [this] { note("locked"); };
        events.onUnlocked = [this] { note("unlocked"); };
        events.onSessionInactive = [this] { note("inactive"); };
        events.onSessionActive = [this] { note("active"); };
    }
    void TearDown() override {
        Testing::end(logind);
        qunsetenv("XDG_SESSION_ID");
    }

    void startLogind() {
        systemBus.startMock(logind, {QStringLiteral("--template"), QStringLiteral("logind")}, login);
        tell(loginPath, QStringLiteral("AddSession"),
             {QStringLiteral("c1"), QStringLiteral("seat0"), 1000U, QStringLiteral("someone"), true});
    }
    QDBusMessage tell(const QString& path, const QString& method, const QVariantList& arguments) {
        QDBusMessage call = QDBusMessage::createMethodCall(login, path, mockInterface, method);
        call.setArguments(arguments);
        return system.call(call);
    }
    void emitFromLogind(const QString& path, const QString& interface, const QString& name,
                        const QString& signature = {}, const QVariantList& arguments = {}) {
        tell(path, QStringLiteral("EmitSignal"), {interface, name, signature, arguments});
    }
    void prepareForSleep(bool sleeping) {
        emitFromLogind(loginPath, login + QStringLiteral(".Manager"), QStringLiteral("PrepareForSleep"),
                       QStringLiteral("b"), {sleeping});
    }
    void screenSaver(const QString& name, bool active) {
        QString path = QLatin1Char('/') + name;
        QDBusMessage signal = QDBusMessage::createSignal(path.replace(QLatin1Char('.'), QLatin1Char('/')),
                                                         name, QStringLiteral("ActiveChanged"));
        signal << active;
        saver.send(signal);
    }
    bool inhibitors() {
        const QDBusMessage reply = system.call(QDBusMessage::createMethodCall(
            login, loginPath, login + QStringLiteral(".Manager"), QStringLiteral("ListInhibitors")));
        const auto list = reply.arguments().constFirst().value<QDBusArgument>();
        list.beginArray();
        return !list.atEnd();
    }
    void note(const char* what) { told += std::string(told.empty() ? "" : " ") + what; }
    bool isTold(const char* expected) {
        const bool came = waitUntil([&] { return told.size() >= std::strlen(expected); });
        runFor(40);
        return came && std::exchange(told, {}) == expected;
    }

    Testing::TestBus systemBus;
    Testing::TestBus sessionBus;
    QDBusConnection system = systemBus.connection(QStringLiteral("tester"));
    QDBusConnection saver = sessionBus.connection(QStringLiteral("screen saver"));
    QProcess logind;
    Platform::LogindSessionEvents events;
    std::string told;
    bool inhibitedInCallback = false;
};

TEST_F(SessionEventsTest, SleepWaitsForTheCallback) {
    events.start(systemBus.connection(QStringLiteral("a")), sessionBus.connection(QStringLiteral("b")));
    ASSERT_TRUE(waitUntil([&] { return events.holdsInhibitor(); }));
    EXPECT_TRUE(inhibitors());

    prepareForSleep(true);
    EXPECT_TRUE(isTold("sleep"));
    EXPECT_TRUE(inhibitedInCallback) << "the machine may sleep before the state is saved";
    EXPECT_TRUE(waitUntil([&] { return !inhibitors(); })) << "the machine waits for nothing";
    prepareForSleep(false);
    EXPECT_TRUE(isTold("wake"));
    EXPECT_TRUE(waitUntil([&] { return inhibitors(); })) << "the second sleep does not wait";

    Testing::end(logind);
    startLogind();
    EXPECT_TRUE(waitUntil([&] { return inhibitors(); })) << "a restarted logind is not asked again";
    prepareForSleep(true);
    EXPECT_TRUE(isTold("sleep"));
}

TEST_F(SessionEventsTest, LocksAndSwitchesAreToldOnce) {
    events.start(systemBus.connection(QStringLiteral("a")), sessionBus.connection(QStringLiteral("b")));
    const QString session = loginPath + QStringLiteral("/session/c1");
    const QString interface = login + QStringLiteral(".Session");
    ASSERT_TRUE(waitUntil([&] { return events.holdsInhibitor(); }));
    runFor(100);

    emitFromLogind(session, interface, QStringLiteral("Lock"));
    EXPECT_TRUE(isTold("locked"));
    screenSaver(QStringLiteral("org.freedesktop.ScreenSaver"), true);
    screenSaver(QStringLiteral("org.gnome.ScreenSaver"), true);
    runFor(80);
    EXPECT_EQ(told, "") << "three sources tell of one lock";
    screenSaver(QStringLiteral("org.gnome.ScreenSaver"), false);
    EXPECT_TRUE(isTold("unlocked"));
    emitFromLogind(session, interface, QStringLiteral("Unlock"));
    runFor(60);
    EXPECT_EQ(told, "");
    emitFromLogind(loginPath + QStringLiteral("/session/c2"), interface, QStringLiteral("Lock"));
    runFor(60);
    EXPECT_EQ(told, "") << "someone else's session is not ours";

    for (const bool active : {false, true, false})
        tell(session, QStringLiteral("UpdateProperties"),
             {interface, QVariantMap{{QStringLiteral("Active"), active}}});
    EXPECT_TRUE(isTold("inactive active inactive"));
}

TEST_F(SessionEventsTest, WorksWithEitherBusMissing) {
    const QDBusConnection none(QStringLiteral("nowhere"));
    events.start(none, sessionBus.connection(QStringLiteral("b")));
    screenSaver(QStringLiteral("org.freedesktop.ScreenSaver"), true);
    EXPECT_TRUE(isTold("locked"));

    Platform::LogindSessionEvents alone;
    alone.start(none, none);
    runFor(20);
    EXPECT_FALSE(alone.holdsInhibitor());
}

} // namespace
