#include "helpers/media/MediaPlayers.h"

#include "helpers/media/MediaProperties.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <utility>

namespace FellowMedia {

namespace {

using FellowCore::NowPlayingCommand;

const QString playerPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

constexpr int longestAnswer = 5000; ///< ms
constexpr int longestStart = 300;   ///< ms until the first line is written without those who are slow

/// The name on the bus without the prefix; empty for one that is no player's.
QString shortName(const QString& name) {
    const QString prefix = rootInterface + QLatin1Char('.');
    return name.startsWith(prefix) ? name.mid(prefix.size()) : QString();
}

QDBusMessage toBus(const QString& method) {
    return QDBusMessage::createMethodCall(busName, busPath, busName, method);
}

/// The dictionary in the `index`th argument, whose signature the caller has checked.
QVariantMap dictionaryIn(const QDBusMessage& message, int index) {
    return qdbus_cast<QVariantMap>(message.arguments().at(index));
}

} // namespace

MediaPlayers::MediaPlayers(const QDBusConnection& bus)
    : bus_(bus), names_(rootInterface + QLatin1Char('*'), bus, QDBusServiceWatcher::WatchForOwnerChange) {
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, &MediaPlayers::becomeReady);
    connect(&names_, &QDBusServiceWatcher::serviceOwnerChanged, this, &MediaPlayers::ownerChanged);
    bus_.connect(QString(), playerPath, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                 SLOT(propertiesChanged(QDBusMessage)));
    bus_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(busLost()));
}

void MediaPlayers::start() {
    patience_.start(longestStart);
    call(toBus(QStringLiteral("ListNames")), [this](const QDBusMessage& reply) {
        const QStringList names = reply.arguments().value(0).toStringList();
        for (const QString& name : names) {
            if (shortName(name).isEmpty()) {
                continue;
            }
            QDBusMessage question = toBus(QStringLiteral("GetNameOwner"));
            question << name;
            call(question, [this, name](const QDBusMessage& answer) {
                addName(name, answer.arguments().value(0).toString());
            });
        }
    });
}

void MediaPlayers::call(const QDBusMessage& question, Answer answer) {
    ++unanswered_;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question, longestAnswer), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answer = std::move(answer)] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        answer(reply.type() == QDBusMessage::ReplyMessage ? reply : QDBusMessage());
        if (--unanswered_ == 0) {
            becomeReady();
        }
    });
}

void MediaPlayers::becomeReady() {
    patience_.stop();
    if (!std::exchange(ready_, true)) {
        onReady();
    }
}

void MediaPlayers::ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner) {
    if (!oldOwner.isEmpty()) {
        removeName(name, oldOwner);
    }
    if (!newOwner.isEmpty()) {
        addName(name, newOwner);
    }
}

void MediaPlayers::addName(const QString& name, const QString& owner) {
    const std::string known = shortName(name).toStdString();
    if (known.empty() || owner.isEmpty() || isProxy(known)) {
        return;
    }
    const bool isNew = entries_.find(owner) == entries_.end();
    entries_[owner].player.names.insert(known);
    if (isNew) {
        ask(owner);
    }
}

void MediaPlayers::removeName(const QString& name, const QString& owner) {
    const auto found = entries_.find(owner);
    if (found == entries_.end()) {
        return;
    }
    found->second.player.names.erase(shortName(name).toStdString());
    if (found->second.player.names.empty()) {
        entries_.erase(found);
    }
    onChanged();
}

void MediaPlayers::ask(const QString& owner) {
    Entry& entry = entries_.at(owner);
    if (entry.asking > 0) {
        // One who takes back its word faster than it answers is asked once more, not each time.
        entry.askAgain = true;
        return;
    }
    entry.askAgain = false;
    entry.asking = 2;
    askInterface(owner, rootInterface, takeRootProperties);
    askInterface(owner, playerInterface, takePlayerProperties);
}

void MediaPlayers::askInterface(const QString& owner, const QString& interface, Take take) {
    QDBusMessage question =
        QDBusMessage::createMethodCall(owner, playerPath, propertiesInterface, QStringLiteral("GetAll"));
    question << interface;
    call(question, [this, owner, take](const QDBusMessage& reply) {
        const auto found = entries_.find(owner);
        if (found == entries_.end()) {
            return;
        }
        if (reply.signature() == QStringLiteral("a{sv}")) {
            change(owner, [&](MediaPlayer& player) { take(player, dictionaryIn(reply, 0)); });
        }
        if (--found->second.asking == 0 && found->second.askAgain) {
            ask(owner);
        }
    });
}

void MediaPlayers::change(const QString& owner, const std::function<void(MediaPlayer& player)>& how) {
    MediaPlayer& player = entries_.at(owner).player;
    const MediaPlayer before = player;
    how(player);
    if (player.isPlaying() != before.isPlaying()) {
        player.lastPlayed = ++plays_;
    }
    if (player != before) {
        onChanged();
    }
}

void MediaPlayers::propertiesChanged(const QDBusMessage& message) {
    const QString owner = message.service();
    if (entries_.find(owner) == entries_.end() || message.signature() != QStringLiteral("sa{sv}as")) {
        return;
    }
    const QString interface = message.arguments().at(0).toString();
    if (interface != rootInterface && interface != playerInterface) {
        return;
    }
    const Take take = interface == rootInterface ? takeRootProperties : takePlayerProperties;
    change(owner, [&](MediaPlayer& player) { take(player, dictionaryIn(message, 1)); });
    if (!message.arguments().at(2).toStringList().isEmpty()) {
        ask(owner);
    }
}

void MediaPlayers::busLost() {
    onLost();
}

std::vector<const MediaPlayer*> MediaPlayers::players() const {
    std::vector<const MediaPlayer*> all;
    all.reserve(entries_.size());
    for (const auto& [owner, entry] : entries_) {
        all.push_back(&entry.player);
    }
    return all;
}

void MediaPlayers::tell(const MediaPlayer& player, NowPlayingCommand command) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const auto& entry) { return &entry.second.player == &player; });
    const auto method = methodFor(player, command);
    if (found == entries_.end() || !method) {
        return;
    }
    const QString& interface = command == NowPlayingCommand::raise ? rootInterface : playerInterface;
    bus_.send(QDBusMessage::createMethodCall(found->first, playerPath, interface, QLatin1String(*method)));
}

} // namespace FellowMedia
