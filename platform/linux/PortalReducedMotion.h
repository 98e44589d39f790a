#pragma once

#include "platform/ReducedMotion.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

#include <map>

namespace Platform {

/// Reduced motion as the settings portal (org.freedesktop.portal.Settings) tells it, for the desktops that
/// have a setting of the kind.
class PortalReducedMotion final : public QObject, public ReducedMotion {
    Q_OBJECT

public:
    PortalReducedMotion() = default;

    /// Asks, without waiting, and listens from here on.
    void start(const QDBusConnection& session);
    bool isReduced() const override { return reduced_; }

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    /// Takes note of one setting; false when it is none of ours.
    bool note(const QString& group, const QString& key, const QVariant& value);
    void conclude();

    std::map<QString, bool> wishes_; ///< by group: whether this source wants less motion
    bool reduced_ = false;
};

} // namespace Platform
