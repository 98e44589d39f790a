#pragma once

#include <QDBusConnection>

namespace Platform {

/// The session bus, or a connection that is not connected when there is none. Never starts a bus, which the
/// library underneath would do by itself.
QDBusConnection sessionBusIfAny();
/// The same for the system bus.
QDBusConnection systemBusIfAny();

} // namespace Platform
