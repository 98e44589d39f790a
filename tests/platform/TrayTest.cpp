#include "platform/linux/LinuxTray.h"
#include "tests/support/TestBus.h"
#include "tests/support/Waiting.h"

#include <QDBusArgument>
#include <QPixmap>

#include <gmock/gmock.h>

using Testing::waitUntil;

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

/// Whether an item has come into the tray that is on the bus now.
bool hasItem(const QDBusConnection& bus) {
    QDBusMessage call = QDBusMessage::createMethodCall(watcherName, QStringLiteral("/StatusNotifierWatcher"),
                                                       QStringLiteral("org.freedesktop.DBus.Mock"),
                                                       QStringLiteral("GetMethodCalls"));
    call.setArguments({QStringLiteral("RegisterStatusNotifierItem")});
    const QDBusMessage reply = bus.call(call);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return false;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    return !list.atEnd();
}

/// A panel comes that shows what the tray holds.
void registerHost(const QDBusConnection& bus) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherName, QStringLiteral("/StatusNotifierWatcher"), watcherName,
                                       QStringLiteral("RegisterStatusNotifierHost"));
    call.setArguments({QStringLiteral("panel")});
    bus.call(call);
}

TEST(TrayTest, ComesAndGoesWithTheDesktopsTray) {
    const Testing::TestBus bus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    const QDBusConnection connection = bus.connection(QStringLiteral("tester"));
    const QStringList watcher{QStringLiteral("--template"),
                              QString::fromUtf8(DESKFELLOW_FIXTURES "/platform/status_notifier_watcher.py")};
    QProcess first;
    QProcess second;
    const Platform::X11Display display;
    Platform::LinuxTray tray(display);
    int changes = 0;
    tray.onShownChange = [&] { ++changes; };
    int built = 0;
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    tray.start(picture, [&](QMenu& menu) {
        ++built;
        menu.addAction(QStringLiteral("entry %1").arg(built));
    });
    tray.setTooltip(QStringLiteral("Ready for focus"));
    Testing::runFor(150);
    EXPECT_FALSE(tray.isShown());
    tray.refreshMenu();
    EXPECT_EQ(built, 0) << "a menu is built that nobody can open";

    bus.startMock(first, watcher, watcherName);
    Testing::runFor(100);
    EXPECT_FALSE(tray.isShown()) << "Qt would look in vain, and remember it";
    registerHost(connection);
    EXPECT_TRUE(waitUntil([&] { return tray.isShown() && hasItem(connection); }));
    EXPECT_EQ(built, 1);
    tray.refreshMenu();
    EXPECT_EQ(built, 2);
    Testing::end(first);
    EXPECT_TRUE(waitUntil([&] { return !tray.isShown(); }));
    bus.startMock(second, watcher, watcherName);
    registerHost(connection);
    EXPECT_TRUE(waitUntil([&] { return tray.isShown() && hasItem(connection); }));
    Testing::end(second);
    EXPECT_TRUE(waitUntil([&] { return changes == 4; }));
}

} // namespace
