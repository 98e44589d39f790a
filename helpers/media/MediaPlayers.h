#pragma once

#include "core/nowplaying/NowPlayingCommand.h"
#include "helpers/media/MediaPlayer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <vector>

namespace FellowMedia {

/// Follows the media players on a session bus: who comes and goes, and what each says of itself. Nothing is
/// asked regularly; a player is asked when it appears and when it says that something is no longer true.
class MediaPlayers : public QObject {
    Q_OBJECT

public:
    explicit MediaPlayers(const QDBusConnection& bus);

    /// Once, when all players that were there at the start have said what they are, or took too long.
    std::function<void()> onReady;
    /// Whenever a player is another than before.
    std::function<void()> onChanged;
    /// The bus is gone.
    std::function<void()> onLost;

    void start();
    /// In no particular order; valid until control returns to the event loop.
    std::vector<const MediaPlayer*> players() const;
    /// Sends a command to one of `players()`; nothing happens when it cannot do that. What comes of it comes
    /// as a change.
    void tell(const MediaPlayer& player, FellowCore::NowPlayingCommand command) const;

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage& message);
    void busLost();

private:
    struct Entry {
        MediaPlayer player;
        int asking = 0; ///< questions without an answer yet
        bool askAgain = false;
    };
    using Answer = std::function<void(const QDBusMessage& reply)>;
    using Take = void (*)(MediaPlayer& player, const QVariantMap& properties);

    /// Asks and goes on; `answer` gets the reply, an empty message for an error or no reply in time.
    void call(const QDBusMessage& question, Answer answer);
    void becomeReady();
    void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);
    void addName(const QString& name, const QString& owner);
    void removeName(const QString& name, const QString& owner);
    void ask(const QString& owner);
    void askInterface(const QString& owner, const QString& interface, Take take);
    /// Changes a player and tells of it when that made a difference.
    void change(const QString& owner, const std::function<void(MediaPlayer& player)>& how);

    QDBusConnection bus_;
    QDBusServiceWatcher names_;
    std::map<QString, Entry> entries_; ///< by connection, of which a player may have several names
    QTimer patience_;
    std::uint64_t plays_ = 0;
    int unanswered_ = 0;
    bool ready_ = false;
};

} // namespace FellowMedia
