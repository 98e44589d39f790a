#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariantMap>

#include <stdexcept>

namespace Bench {

/// The desktop's settings service (org.freedesktop.portal.Settings, version 1) of a user who wants no
/// animations, on the session bus of this process; it answers while an event loop runs.
class SettingsPortal final : public QDBusVirtualObject {
public:
    SettingsPortal() {
        qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
        QDBusConnection bus = QDBusConnection::sessionBus();
        const bool stands =
            bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this) &&
            bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
        if (!stands) {
            throw std::runtime_error("the session bus does not take a settings portal");
        }
    }

    /// Whether anyone has read the settings.
    bool wasAsked() const { return asked_; }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QLatin1String("ReadAll")) {
            return false;
        }
        const QMap<QString, QVariantMap> settings{
            {QStringLiteral("org.gnome.desktop.interface"), {{QStringLiteral("enable-animations"), false}}}};
        asked_ = connection.send(message.createReply(QVariant::fromValue(settings)));
        return true;
    }

private:
    bool asked_ = false;
};

} // namespace Bench
