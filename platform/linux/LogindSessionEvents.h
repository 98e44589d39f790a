#pragma once

#include "platform/SessionEvents.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace Platform {

/// Session events from logind (org.freedesktop.login1) and from the desktops' screen lockers. Every call on a
/// bus is asynchronous.
class LogindSessionEvents final : public QObject, public SessionEvents {
    Q_OBJECT

public:
    LogindSessionEvents();

    /// Begins to listen; either bus may be one that is not connected.
    void start(const QDBusConnection& system, const QDBusConnection& session);

    /// Whether sleep would wait for us now.
    bool holdsInhibitor() const { return inhibitor_.isValid(); }

private Q_SLOTS:
    void prepareForSleep(bool sleeping);
    void lock() { setLocked(true); }
    void unlock() { setLocked(false); }
    void screenSaverActive(bool active) { setLocked(active); }
    void sessionProperties(const QString& interface, const QVariantMap& changed, const QStringList& dropped);

private:
    void startLogind();
    void takeInhibitor();
    void findSession();
    void findDisplaySession();
    void followSession(const QString& path);
    void setLocked(bool locked);

    QDBusConnection system_;
    QDBusServiceWatcher logind_;
    QDBusUnixFileDescriptor inhibitor_;
    QString sessionPath_;
    bool asleep_ = false;
    bool locked_ = false;
    bool active_ = true;
};

} // namespace Platform
