#include "platform/linux/BusKeepAwake.h"

#include "platform/linux/Buses.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QVariantMap>

#include <utility>

namespace Platform {
namespace {

const QString screenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
const QString screenSaverPath = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString login = QStringLiteral("org.freedesktop.login1");
const QString program = QStringLiteral("Deskfellow");
constexpr uint portalSuspendAndIdle = 4 | 8;

QString reason() {
    return QCoreApplication::translate("Platform", "You asked to keep the computer awake");
}

/// To whoever answered, not to whoever has its name by then: that one may have given us the same number.
std::optional<QDBusMessage> uninhibit(const QDBusMessage& answer) {
    const QDBusPendingReply<uint> cookie(answer);
    if (cookie.isError())
        return std::nullopt;
    auto call = QDBusMessage::createMethodCall(answer.service(), screenSaverPath, screenSaver,
                                               QStringLiteral("UnInhibit"));
    call.setArguments({cookie.value()});
    return call;
}

std::optional<QDBusMessage> closeRequest(const QDBusMessage& answer) {
    const QDBusPendingReply<QDBusObjectPath> handle(answer);
    if (handle.isError())
        return std::nullopt;
    return QDBusMessage::createMethodCall(answer.service(), handle.value().path(),
                                          QStringLiteral("org.freedesktop.portal.Request"),
                                          QStringLiteral("Close"));
}

/// Hands the answer on even when whoever asked is gone by then.
void ask(const QDBusConnection& bus, const QDBusMessage& call,
         std::function<void(const QDBusMessage&)> answered) {
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [answered = std::move(answered)](QDBusPendingCallWatcher* done) {
                         done->deleteLater();
                         answered(done->reply());
                     });
}

} // namespace

BusKeepAwake::BusKeepAwake(const QDBusConnection& system, const QDBusConnection& session)
    : system_(system), session_(session) {
    if (session_.isConnected()) {
        screenServices_.setConnection(session_);
        screenServices_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
        screenServices_.setWatchedServices({screenSaver, portal});
        connect(&screenServices_, &QDBusServiceWatcher::serviceOwnerChanged, this,
                &BusKeepAwake::screenServiceChanged);
        askScreenSaver();
    }
    if (system_.isConnected()) {
        logind_.setConnection(system_);
        logind_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
        logind_.addWatchedService(login);
        connect(&logind_, &QDBusServiceWatcher::serviceRegistered, this, &BusKeepAwake::askLogind);
        askLogind();
    }
}

BusKeepAwake::~BusKeepAwake() {
    if (letGo_)
        session_.send(*letGo_);
}

void BusKeepAwake::askScreenSaver() {
    ++turn_;
    auto call =
        QDBusMessage::createMethodCall(screenSaver, screenSaverPath, screenSaver, QStringLiteral("Inhibit"));
    call.setArguments({program, reason()});
    call.setAutoStartService(false); // a desktop has its own; a stranger's is not to be started
    askScreen(call, uninhibit, &BusKeepAwake::askPortal);
}

void BusKeepAwake::askPortal() {
    auto call = QDBusMessage::createMethodCall(
        portal, portalPath, QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    call.setArguments({QString(), portalSuspendAndIdle, QVariantMap{{QStringLiteral("reason"), reason()}}});
    askScreen(call, closeRequest);
}

void BusKeepAwake::askScreen(const QDBusMessage& call, const TakeBack& takeBack,
                             void (BusKeepAwake::*otherwise)()) {
    ask(session_, call,
        [self = QPointer(this), bus = session_, turn = turn_, takeBack,
         otherwise](const QDBusMessage& answer) {
            std::optional<QDBusMessage> letGo = takeBack(answer);
            if (self && self->turn_ == turn) {
                const bool wasHeld = self->isHeld();
                if (letGo)
                    std::swap(self->letGo_, letGo); // the new hold comes before the end of the old one
                else if (otherwise && !self->letGo_)
                    (self->*otherwise)();
                self->tellChange(wasHeld);
            }
            if (letGo)
                bus.send(*letGo);
        });
}

void BusKeepAwake::screenServiceChanged(const QString& service, const QString& before) {
    const bool wasHeld = isHeld();
    if (letGo_ && letGo_->service() == before)
        letGo_.reset();
    if (!letGo_ || service == screenSaver)
        askScreenSaver();
    tellChange(wasHeld);
}

void BusKeepAwake::tellChange(bool wasHeld) const {
    if (isHeld() != wasHeld && onChanged)
        onChanged();
}

void BusKeepAwake::askLogind() {
    auto call = QDBusMessage::createMethodCall(login, QStringLiteral("/org/freedesktop/login1"),
                                               login + QStringLiteral(".Manager"), QStringLiteral("Inhibit"));
    call.setArguments({QStringLiteral("idle:sleep"), program, reason(), QStringLiteral("block")});
    ask(system_, call, [self = QPointer(this)](const QDBusMessage& answer) {
        const QDBusPendingReply<QDBusUnixFileDescriptor> file(answer);
        // Refused, or no logind: the screen's hold stands alone. Too late: the file closes with the answer.
        if (self && !file.isError()) {
            const bool wasHeld = self->isHeld();
            self->inhibitor_ = file.value();
            self->tellChange(wasHeld);
        }
    });
}

std::unique_ptr<KeepAwake> keepAwake() {
    return std::make_unique<BusKeepAwake>(systemBusIfAny(), sessionBusIfAny());
}

} // namespace Platform
