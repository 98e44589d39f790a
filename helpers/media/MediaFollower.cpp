#include "helpers/media/MediaFollower.h"

#include "helpers/media/MediaChoice.h"

#include <algorithm>
#include <utility>

namespace FellowMedia {

namespace {

/// Players say in several messages what is one change, and the picture takes a moment.
constexpr qint64 settling = 30; ///< ms
/// Between two lines, however fast players change.
constexpr qint64 betweenLines = 100; ///< ms

} // namespace

MediaFollower::MediaFollower(const QDBusConnection& bus, int output) : players_(bus), output_(output) {
    soon_.setSingleShot(true);
    soon_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&soon_, &QTimer::timeout, &soon_, [this] { write(); });
    players_.onReady = [this] {
        ready_ = true;
        changed();
    };
    players_.onChanged = [this] { changed(); };
    players_.onLost = [this] { onLost(); };
    artwork_.onChanged = [this] { changed(); };
    output_.onClosed = [this] { onClosed(); };
    output_.onWritten = [this] {
        if (std::exchange(changedWhileWriting_, false)) {
            changed();
        }
    };
}

const MediaPlayer* MediaFollower::shown() const {
    return chosenPlayer(players_.players());
}

void MediaFollower::wantArtwork() {
    if (const MediaPlayer* player = shown()) {
        artwork_.want(player->artworkURL, player->title + '\n' + player->artist + '\n' + player->identifier);
    } else {
        artwork_.want({}, {});
    }
}

void MediaFollower::changed() {
    if (!ready_ || soon_.isActive()) {
        return;
    }
    wantArtwork();
    const qint64 since = sinceLine_.isValid() ? sinceLine_.elapsed() : betweenLines;
    soon_.start(static_cast<int>(std::max(settling, betweenLines - since)));
}

void MediaFollower::write() {
    if (output_.isBusy()) {
        changedWhileWriting_ = true;
        return;
    }
    wantArtwork();
    if (auto line = stream_.line(shown(), artwork_.base64())) {
        sinceLine_.start();
        output_.write(std::move(*line));
    }
}

void MediaFollower::tell(FellowCore::NowPlayingCommand command) const {
    if (const MediaPlayer* player = shown()) {
        players_.tell(*player, command);
    }
}

} // namespace FellowMedia
