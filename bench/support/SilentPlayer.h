#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <stdexcept>

namespace Bench {

/// A media player (org.mpris.MediaPlayer2) on the session bus of this process that says it plays one piece
/// for ever and makes no sound; it answers while an event loop runs.
class SilentPlayer final : public QDBusVirtualObject {
public:
    SilentPlayer() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        const bool stands = bus.registerVirtualObject(QStringLiteral("/org/mpris/MediaPlayer2"), this) &&
                            bus.registerService(QStringLiteral("org.mpris.MediaPlayer2.bench"));
        if (!stands) {
            throw std::runtime_error("the session bus does not take a media player");
        }
    }

    /// Whether anyone has asked what it plays.
    bool wasAsked() const { return asked_; }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QLatin1String("GetAll")) {
            return false;
        }
        const bool ofPlayer = message.arguments().value(0).toString().endsWith(QLatin1String(".Player"));
        const QVariantMap piece{{QStringLiteral("xesam:title"), QStringLiteral("Rain")}};
        const QVariantMap player{{QStringLiteral("PlaybackStatus"), QStringLiteral("Playing")},
                                 {QStringLiteral("Metadata"), piece},
                                 {QStringLiteral("CanPause"), true}};
        const QVariantMap root{{QStringLiteral("Identity"), QStringLiteral("Bench")}};
        const bool sent = connection.send(message.createReply(ofPlayer ? player : root));
        asked_ = asked_ || (sent && ofPlayer);
        return sent;
    }

private:
    bool asked_ = false;
};

} // namespace Bench
