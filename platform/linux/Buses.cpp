#include "platform/linux/Buses.h"

#include <QFileInfo>

namespace Platform {
namespace {

QDBusConnection none() {
    return QDBusConnection(QStringLiteral("deskfellow-no-bus"));
}

} // namespace

QDBusConnection sessionBusIfAny() {
    const bool named = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool standing = !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
    return named || standing ? QDBusConnection::sessionBus() : none();
}

QDBusConnection systemBusIfAny() {
    const bool named = !qEnvironmentVariableIsEmpty("DBUS_SYSTEM_BUS_ADDRESS");
    const bool standing = QFileInfo::exists(QStringLiteral("/run/dbus/system_bus_socket")) ||
                          QFileInfo::exists(QStringLiteral("/var/run/dbus/system_bus_socket"));
    return named || standing ? QDBusConnection::systemBus() : none();
}

} // namespace Platform
