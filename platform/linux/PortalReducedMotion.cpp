#include "platform/linux/PortalReducedMotion.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <algorithm>

namespace Platform {
namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

using Groups = QMap<QString, QVariantMap>;

struct Source {
    QString group;
    QString key;
    bool (*wantsLess)(const QVariant& value);
};

const std::array sources = {
    Source{QStringLiteral("org.freedesktop.appearance"), QStringLiteral("reduced-motion"),
           [](const QVariant& value) { return value.toUInt() == 1; }},
    Source{QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"),
           [](const QVariant& value) { return value.typeId() == QMetaType::Bool && !value.toBool(); }},
    Source{QStringLiteral("org.kde.kdeglobals.KDE"), QStringLiteral("AnimationDurationFactor"),
           [](const QVariant& value) {
               bool number = false;
               return value.toDouble(&number) == 0 && number;
           }},
};

/// Portals wrap a value in as many variants as their version likes.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

void PortalReducedMotion::start(const QDBusConnection& session) {
    if (!session.isConnected())
        return;
    qDBusRegisterMetaType<Groups>();
    QDBusConnection bus = session;
    bus.connect(portal, portalPath, settings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QStringList groups;
    for (const Source& source : sources)
        groups.append(source.group);
    QDBusMessage call =
        QDBusMessage::createMethodCall(portal, portalPath, settings, QStringLiteral("ReadAll"));
    call.setArguments({groups});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        const QDBusPendingReply<Groups> reply(*done);
        if (reply.isError())
            return; // No portal, or one without settings: motion is as usual.
        const Groups values = reply.value();
        for (auto group = values.cbegin(); group != values.cend(); ++group) {
            for (auto entry = group->cbegin(); entry != group->cend(); ++entry)
                note(group.key(), entry.key(), entry.value());
        }
        conclude();
    });
}

void PortalReducedMotion::settingChanged(const QString& group, const QString& key,
                                         const QDBusVariant& value) {
    if (note(group, key, value.variant()))
        conclude();
}

bool PortalReducedMotion::note(const QString& group, const QString& key, const QVariant& value) {
    for (const Source& source : sources) {
        if (source.group == group && source.key == key) {
            wishes_[group] = source.wantsLess(unwrapped(value));
            return true;
        }
    }
    return false;
}

void PortalReducedMotion::conclude() {
    const bool reduced =
        std::any_of(wishes_.begin(), wishes_.end(), [](const auto& wish) { return wish.second; });
    if (reduced == reduced_)
        return;
    reduced_ = reduced;
    if (onChange)
        onChange();
}

} // namespace Platform
