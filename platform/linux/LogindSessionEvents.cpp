#include "platform/linux/LogindSessionEvents.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <functional>

namespace Platform {
namespace {

const QString login = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString loginManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString loginSession = QStringLiteral("org.freedesktop.login1.Session");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

/// Lockers that tell of themselves, each with the same signal.
const char* const screenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                    "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                    "org.xfce.ScreenSaver"};

QDBusMessage managerCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(login, loginPath, loginManager, method);
    call.setArguments(arguments);
    return call;
}

void ask(const QDBusConnection& bus, QObject* owner, const QDBusMessage& call,
         std::function<void(const QDBusMessage&)> answer) {
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner,
                     [answer = std::move(answer)](QDBusPendingCallWatcher* done) {
                         done->deleteLater();
                         answer(done->reply());
                     });
}

} // namespace

LogindSessionEvents::LogindSessionEvents() : system_(QStringLiteral("deskfellow-no-bus")) {}

void LogindSessionEvents::start(const QDBusConnection& system, const QDBusConnection& session) {
    system_ = system;
    if (session.isConnected()) {
        QDBusConnection bus = session;
        for (const char* name : screenSavers)
            bus.connect(QString(), QString(), QString::fromLatin1(name), QStringLiteral("ActiveChanged"),
                        this, SLOT(screenSaverActive(bool)));
    }
    if (!system_.isConnected())
        return;
    system_.connect(login, loginPath, loginManager, QStringLiteral("PrepareForSleep"), this,
                    SLOT(prepareForSleep(bool)));
    // logind may be restarted under us; the inhibitor is then to be taken again.
    logind_.setConnection(system_);
    logind_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    logind_.addWatchedService(login);
    connect(&logind_, &QDBusServiceWatcher::serviceRegistered, this, &LogindSessionEvents::startLogind);
    startLogind();
}

void LogindSessionEvents::startLogind() {
    takeInhibitor();
    findSession();
}

void LogindSessionEvents::takeInhibitor() {
    const auto call = managerCall(QStringLiteral("Inhibit"),
                                  {QStringLiteral("sleep"), QStringLiteral("Deskfellow"),
                                   QCoreApplication::translate("Platform", "Pausing and saving before sleep"),
                                   QStringLiteral("delay")});
    ask(system_, this, call, [this](const QDBusMessage& reply) {
        const QDBusPendingReply<QDBusUnixFileDescriptor> file(reply);
        // Refused or no logind: sleep is then told of without waiting for us.
        if (!file.isError() && !asleep_)
            inhibitor_ = file.value();
    });
}

void LogindSessionEvents::findSession() {
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    const auto call = id.isEmpty() ? managerCall(QStringLiteral("GetSessionByPID"),
                                                 {static_cast<uint>(QCoreApplication::applicationPid())})
                                   : managerCall(QStringLiteral("GetSession"), {id});
    ask(system_, this, call, [this](const QDBusMessage& reply) {
        const QDBusPendingReply<QDBusObjectPath> path(reply);
        if (path.isError())
            findDisplaySession();
        else
            followSession(path.value().path());
    });
}

void LogindSessionEvents::findDisplaySession() {
    // A program that the user's service manager started belongs to no session; the user's graphical one is
    // meant.
    QDBusMessage call = QDBusMessage::createMethodCall(login, loginPath + QStringLiteral("/user/self"),
                                                       properties, QStringLiteral("Get"));
    call.setArguments({QStringLiteral("org.freedesktop.login1.User"), QStringLiteral("Display")});
    ask(system_, this, call, [this](const QDBusMessage& reply) {
        const QDBusPendingReply<QDBusVariant> value(reply);
        if (value.isError() || !value.value().variant().canConvert<QDBusArgument>())
            return; // No session at all: sleep still works, locking comes from the screen saver.
        const auto argument = value.value().variant().value<QDBusArgument>();
        if (argument.currentSignature() != QStringLiteral("(so)"))
            return;
        QString id;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> id >> path;
        argument.endStructure();
        if (!id.isEmpty())
            followSession(path.path());
    });
}

void LogindSessionEvents::followSession(const QString& path) {
    if (path == sessionPath_)
        return;
    const auto each = [](const QString& at, auto&& perform) {
        perform(at, loginSession, QStringLiteral("Lock"), SLOT(lock()));
        perform(at, loginSession, QStringLiteral("Unlock"), SLOT(unlock()));
        perform(at, properties, QStringLiteral("PropertiesChanged"),
                SLOT(sessionProperties(QString, QVariantMap, QStringList)));
    };
    if (!sessionPath_.isEmpty())
        each(sessionPath_,
             [this](const QString& at, const QString& interface, const QString& name, const char* slot) {
                 system_.disconnect(login, at, interface, name, this, slot);
             });
    sessionPath_ = path;
    each(sessionPath_, [this](const QString& at, const QString& interface, const QString& name,
                              const char* slot) { system_.connect(login, at, interface, name, this, slot); });
}

void LogindSessionEvents::prepareForSleep(bool sleeping) {
    if (sleeping == asleep_)
        return;
    asleep_ = sleeping;
    if (sleeping) {
        if (onWillSleep)
            onWillSleep();
        inhibitor_ = QDBusUnixFileDescriptor(); // Closing it lets sleep begin.
    } else {
        takeInhibitor();
        if (onDidWake)
            onDidWake();
    }
}

void LogindSessionEvents::sessionProperties(const QString& interface, const QVariantMap& changed,
                                            const QStringList&) {
    if (interface != loginSession)
        return;
    if (const auto hint = changed.constFind(QStringLiteral("LockedHint")); hint != changed.constEnd())
        setLocked(hint->toBool());
    if (const auto active = changed.constFind(QStringLiteral("Active")); active != changed.constEnd()) {
        const bool was = std::exchange(active_, active->toBool());
        const auto& tell = active_ ? onSessionActive : onSessionInactive;
        if (was != active_ && tell)
            tell();
    }
}

void LogindSessionEvents::setLocked(bool locked) {
    if (locked == locked_)
        return;
    locked_ = locked;
    const auto& tell = locked ? onLocked : onUnlocked;
    if (tell)
        tell();
}

} // namespace Platform
