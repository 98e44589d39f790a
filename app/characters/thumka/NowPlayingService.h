#pragma once

#include "app/characters/thumka/NowPlayingFeed.h"

#include <QThread>

namespace DeskSprites {

/// What plays on this computer, as the media helper tells it, and a way to tell the player something. Nothing
/// runs until it is followed, and the drawing thread never waits.
class NowPlayingService : public QObject {
    Q_OBJECT

public:
    /// `program` is where the media helper is installed.
    explicit NowPlayingService(QString program, NowPlayingPatience patience = {});
    /// Waits for the helper to end, a second and a half at most.
    ~NowPlayingService() override;

    /// Starts the helper, or lets it end and forgets what played.
    void setFollowing(bool following);
    bool isFollowing() const { return following_; }
    /// Whether the helper works; `false` while it starts, too.
    bool isAvailable() const { return news_.following == NowPlayingNews::Following::works; }
    /// What was last heard; nothing while it is not followed.
    const NowPlayingNews& news() const { return news_; }
    /// Tells the shown player something; nothing while it is not followed.
    void send(FellowCore::NowPlayingCommand command);

Q_SIGNALS:
    void changed();

private:
    void take(const NowPlayingNews& news);

    QThread thread_;
    NowPlayingFeed* feed_; ///< lives on the thread, which deletes it
    NowPlayingNews news_;
    bool following_ = false;
};

} // namespace DeskSprites
