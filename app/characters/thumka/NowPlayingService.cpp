#include "app/characters/thumka/NowPlayingService.h"

#include <utility>

namespace DeskSprites {

NowPlayingService::NowPlayingService(QString program, NowPlayingPatience patience)
    : feed_(new NowPlayingFeed(std::move(program), patience)) {
    thread_.setObjectName(QStringLiteral("music"));
    feed_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, feed_, &QObject::deleteLater);
    connect(feed_, &NowPlayingFeed::published, this, &NowPlayingService::take);
}

NowPlayingService::~NowPlayingService() {
    if (!thread_.isRunning()) {
        delete feed_; // nobody else has it yet
        return;
    }
    thread_.quit();
    thread_.wait();
}

void NowPlayingService::setFollowing(bool following) {
    if (std::exchange(following_, following) == following) {
        return;
    }
    if (following) {
        if (!thread_.isRunning()) {
            thread_.start();
        }
        QMetaObject::invokeMethod(feed_, &NowPlayingFeed::start);
        return;
    }
    QMetaObject::invokeMethod(feed_, &NowPlayingFeed::stop);
    news_ = {};
    Q_EMIT changed();
}

void NowPlayingService::take(const NowPlayingNews& news) {
    if (!following_) {
        return; // it was on its way when following ended
    }
    news_ = news;
    Q_EMIT changed();
}

void NowPlayingService::send(FellowCore::NowPlayingCommand command) {
    if (following_) {
        QMetaObject::invokeMethod(feed_, [feed = feed_, command] { feed->send(command); });
    }
}

} // namespace DeskSprites
