#include "tests/support/TestBus.h"

#include "tests/support/Waiting.h"

#include <QDBusConnectionInterface>

namespace Testing {

TestBus::TestBus() {
    daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                  QStringLiteral("--print-address")});
    daemon_.waitForReadyRead(5000);
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

TestBus::~TestBus() {
    if (daemon_.state() != QProcess::NotRunning)
        end(daemon_);
}

QDBusConnection TestBus::connection(const QString& name) const {
    // Qt knows connections by name in the whole process; the address tells the buses of several tests apart.
    return QDBusConnection::connectToBus(address_, name + address_);
}

void TestBus::startMock(QProcess& process, const QStringList& what, const QString& busName) const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), address_);
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address_);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("/usr/bin/python3"),
                  QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock")} + what);
    const QDBusConnection bus = connection(QStringLiteral("waiting for a mock"));
    waitUntil([&] { return bus.interface()->isServiceRegistered(busName).value(); }, 10000);
}

void end(QProcess& process) {
    process.terminate();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

} // namespace Testing
