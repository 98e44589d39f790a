#pragma once

#include "core/nowplaying/NowPlayingCommand.h"
#include "helpers/media/MediaArtwork.h"
#include "helpers/media/MediaOutput.h"
#include "helpers/media/MediaPlayers.h"
#include "helpers/media/MediaStream.h"

#include <QElapsedTimer>
#include <QTimer>

namespace FellowMedia {

/// Brings players, choice, picture and stream together: every change of a player leads, a moment later, to at
/// most one line with how things are then. Nothing runs while nothing changes.
class MediaFollower {
public:
    MediaFollower(const QDBusConnection& bus, int output);

    /// Nobody reads any more.
    std::function<void()> onClosed;
    /// The bus is gone.
    std::function<void()> onLost;

    void start() { players_.start(); }
    /// Tells the player that is shown.
    void tell(FellowCore::NowPlayingCommand command) const;

private:
    const MediaPlayer* shown() const;
    /// Has the picture of what is shown read.
    void wantArtwork();
    void changed();
    void write();

    MediaPlayers players_;
    MediaArtwork artwork_;
    MediaStream stream_;
    MediaOutput output_;
    QTimer soon_;
    QElapsedTimer sinceLine_;
    bool ready_ = false;
    bool changedWhileWriting_ = false;
};

} // namespace FellowMedia
