#include "platform/linux/TmuxPanes.h"

#include <QProcess>
#include <QStringList>

#include <optional>

namespace Platform {
namespace {

constexpr int answerMilliseconds = 1000;

/// One server, by its socket.
class Tmux {
public:
    /// "SOCKET,SERVER,SESSION" (man 1 tmux, ENVIRONMENT); the socket's path may hold a comma.
    explicit Tmux(const std::string& variable)
        : socket_(QString::fromLocal8Bit(variable.c_str()).section(QLatin1Char(','), 0, -3)) {}

    /// The lines of the answer; nothing when the server does not answer or refuses.
    std::optional<QStringList> ask(const QStringList& arguments) const {
        QProcess process;
        process.start(QStringLiteral("tmux"), QStringList{QStringLiteral("-S"), socket_} + arguments);
        if (!process.waitForFinished(answerMilliseconds)) {
            process.kill();
            process.waitForFinished(answerMilliseconds);
            return std::nullopt;
        }
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            return std::nullopt;
        }
        return QString::fromLocal8Bit(process.readAllStandardOutput())
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QString socket_;
};

struct Client {
    QString device;
    QString session;
    qint64 activity = 0;
};

/// The client that shows the session, or else the one used last; of several, the one used last.
std::optional<Client> clientFor(const Tmux& tmux, const QString& session) {
    std::optional<Client> best;
    const auto lines = tmux.ask({QStringLiteral("list-clients"), QStringLiteral("-F"),
                                 QStringLiteral("#{client_tty} #{session_id} #{client_activity}")});
    for (const QString& line : lines.value_or(QStringList())) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() != 3) {
            continue;
        }
        const Client client{words[0], words[1], words[2].toLongLong()};
        const auto rank = [&](const Client& of) { return std::pair(of.session == session, of.activity); };
        if (!best || rank(client) > rank(*best)) {
            best = client;
        }
    }
    return best;
}

} // namespace

std::string revealTmuxPane(const std::string& server, const std::string& device) {
    const Tmux tmux(server);
    const auto panes = tmux.ask({QStringLiteral("list-panes"), QStringLiteral("-a"), QStringLiteral("-F"),
                                 QStringLiteral("#{pane_tty} #{pane_id} #{session_id}")});
    for (const QString& line : panes.value_or(QStringList())) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() != 3 || words[0].toStdString() != device) {
            continue;
        }
        tmux.ask({QStringLiteral("select-window"), QStringLiteral("-t"), words[1]});
        tmux.ask({QStringLiteral("select-pane"), QStringLiteral("-t"), words[1]});
        const auto client = clientFor(tmux, words[2]);
        if (client && client->session != words[2]) {
            tmux.ask({QStringLiteral("switch-client"), QStringLiteral("-c"), client->device,
                      QStringLiteral("-t"), words[1]});
        }
        return client ? client->device.toStdString() : std::string();
    }
    return {};
}

} // namespace Platform
