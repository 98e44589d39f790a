#include "platform/linux/KonsoleTabs.h"

#include "platform/linux/Buses.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QXmlStreamReader>

namespace Platform {
namespace {

constexpr int answerMilliseconds = 1000;

/// One Konsole on the session bus. Its objects: /Windows/N, /Sessions/N and /konsole/MainWindow_N.
class Konsole {
public:
    explicit Konsole(long pid)
        : bus_(sessionBusIfAny()), service_(QStringLiteral("org.kde.konsole-%1").arg(pid)) {}

    bool answers() const { return bus_.isConnected() && bus_.interface()->isServiceRegistered(service_); }

    /// The first value of the answer; invalid when there is none.
    QVariant ask(const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments = {}) const {
        QDBusMessage message = QDBusMessage::createMethodCall(service_, path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage answer = bus_.call(message, QDBus::Block, answerMilliseconds);
        const bool good = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
        return good ? answer.arguments().first() : QVariant();
    }

    /// The names of the objects right below a path.
    QStringList children(const QString& path) const {
        QXmlStreamReader xml(
            ask(path, QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"))
                .toString());
        QStringList names;
        while (!xml.atEnd()) {
            const bool isNode = xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"node";
            const QString name =
                isNode ? xml.attributes().value(QStringLiteral("name")).toString() : QString();
            if (!name.isEmpty()) {
                names.push_back(name);
            }
        }
        return names;
    }

private:
    QDBusConnection bus_;
    QString service_;
};

} // namespace

std::optional<unsigned long long> revealKonsoleTab(long konsole, long shell) {
    const Konsole program(konsole);
    if (!program.answers()) {
        return std::nullopt;
    }
    const QString window = QStringLiteral("org.kde.konsole.Window");
    for (const QString& number : program.children(QStringLiteral("/Windows"))) {
        const QString path = QStringLiteral("/Windows/") + number;
        const QStringList sessions = program.ask(path, window, QStringLiteral("sessionList")).toStringList();
        for (const QString& session : sessions) {
            const QVariant first =
                program.ask(QStringLiteral("/Sessions/") + session, QStringLiteral("org.kde.konsole.Session"),
                            QStringLiteral("processId"));
            if (!first.isValid() || first.toLongLong() != shell) {
                continue;
            }
            program.ask(path, window, QStringLiteral("setCurrentSession"), {session.toInt()});
            const QVariant shown =
                program.ask(QStringLiteral("/konsole/MainWindow_") + number,
                            QStringLiteral("org.kde.KMainWindow"), QStringLiteral("winId"));
            return shown.isValid() ? std::optional(shown.toULongLong()) : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace Platform
