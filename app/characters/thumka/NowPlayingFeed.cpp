#include "app/characters/thumka/NowPlayingFeed.h"

#include "app/characters/thumka/NowPlayingCover.h"
#include "core/base/Json.h"

#include <algorithm>
#include <utility>

namespace DeskSprites {

using Following = NowPlayingNews::Following;

namespace {
/// More than this waiting to be read means that the helper does not read.
constexpr qint64 mostUnread = 1024;
} // namespace

NowPlayingFeed::NowPlayingFeed(QString program, NowPlayingPatience patience)
    : program_(std::move(program)), patience_(patience), pause_(patience.firstPause) {
    for (QTimer* timer : {&restart_, &urge_, &publish_}) {
        timer->setParent(this); // so that they move to the thread with it
        timer->setSingleShot(true);
    }
    connect(&restart_, &QTimer::timeout, this, &NowPlayingFeed::launch);
    connect(&publish_, &QTimer::timeout, this, [this] {
        lastNews_.start();
        Q_EMIT published(news_);
    });
}

NowPlayingFeed::~NowPlayingFeed() {
    if (!process_) {
        return;
    }
    process_->disconnect(this);
    process_->closeWriteChannel();
    const auto gone = [this](NowPlayingPatience::Time within) {
        return process_->waitForFinished(static_cast<int>(within.count()));
    };
    if (!gone(patience_.beforeTerm)) {
        process_->kill(); // the program is ending and waits for this
        gone(patience_.beforeKill);
    }
}

void NowPlayingFeed::start() {
    if (std::exchange(following_, true)) {
        return;
    }
    pause_ = patience_.firstPause;
    forget(Following::starting);
    if (!process_) { // otherwise the one on its way out is waited for
        launch();
    }
}

void NowPlayingFeed::stop() {
    if (!std::exchange(following_, false)) {
        return;
    }
    restart_.stop();
    forget(Following::starting);
    if (process_) {
        letEnd();
    }
}

void NowPlayingFeed::launch() {
    process_ = std::make_unique<QProcess>();
    if (pause_ == patience_.firstPause) {
        process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    } else {
        process_->setStandardErrorFile(QProcess::nullDevice()); // it has said already why it ends
    }
    connect(process_.get(), &QProcess::readyReadStandardOutput, this, &NowPlayingFeed::read);
    connect(process_.get(), &QProcess::finished, this, &NowPlayingFeed::ended);
    connect(process_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) { // any other end is told of as such
            ended();
        }
    });
    ending_ = false;
    lived_.start();
    process_->start(program_, QStringList());
}

void NowPlayingFeed::letEnd() {
    if (std::exchange(ending_, true)) {
        return;
    }
    process_->closeWriteChannel();
    urge_.disconnect();
    connect(&urge_, &QTimer::timeout, this, [this] {
        process_->terminate();
        urge_.disconnect();
        connect(&urge_, &QTimer::timeout, this, [this] { process_->kill(); });
        urge_.start(patience_.beforeKill);
    });
    urge_.start(patience_.beforeTerm);
}

void NowPlayingFeed::ended() {
    urge_.stop();
    urge_.disconnect();
    process_->disconnect(this);
    process_.release()->deleteLater(); // it is what called
    if (!following_) {
        return;
    }
    if (ending_) { // it was let go, and is wanted again since
        launch();
        return;
    }
    forget(Following::failed);
    restartLater();
}

void NowPlayingFeed::restartLater() {
    if (lived_.hasExpired(patience_.steady.count())) {
        pause_ = patience_.firstPause;
    }
    restart_.start(pause_);
    pause_ = std::min(2 * pause_, patience_.longestPause);
}

void NowPlayingFeed::read() {
    const QByteArray bytes = process_->readAllStandardOutput();
    if (ending_) {
        return;
    }
    for (const std::string& line :
         lines_.append({bytes.constData(), static_cast<std::size_t>(bytes.size())})) {
        consume(line);
    }
}

void NowPlayingFeed::consume(const std::string& line) {
    try {
        news_.track = parser_.consume(line);
    } catch (const std::runtime_error& error) {
        if (!std::exchange(complained_, true)) {
            qWarning("Thumka skips what the media helper wrote: %s", error.what());
        }
        return;
    }
    news_.following = Following::works;
    news_.controls = FellowCore::NowPlayingControls::from(parser_.fields());
    const bool hasArtwork = news_.track && news_.track->artworkData;
    showCover(hasArtwork ? &*news_.track->artworkData : nullptr);
    if (hasArtwork) {
        news_.track->artworkData.reset();
    }
    publishSoon();
}

void NowPlayingFeed::showCover(const std::vector<std::uint8_t>* artwork) {
    if (!artwork) {
        artwork_ = {};
        news_.cover = {};
    } else if (*artwork != artwork_) {
        artwork_ = *artwork;
        news_.cover = NowPlayingCover::read(artwork_);
    }
}

void NowPlayingFeed::forget(Following following) {
    lines_ = {};
    parser_ = {};
    artwork_ = {};
    news_ = {.following = following, .track = {}, .controls = {}, .cover = {}};
    complained_ = false;
    publishSoon();
}

void NowPlayingFeed::publishSoon() {
    if (publish_.isActive()) {
        return;
    }
    const auto since = lastNews_.isValid() ? lastNews_.elapsed() : patience_.betweenNews.count();
    publish_.start(
        std::max(NowPlayingPatience::Time(0), patience_.betweenNews - NowPlayingPatience::Time(since)));
}

void NowPlayingFeed::send(FellowCore::NowPlayingCommand command) {
    if (!process_ || ending_ || process_->bytesToWrite() > mostUnread) {
        return;
    }
    const std::string line = std::string(rawValue(command)) + "\n";
    process_->write(line.data(), static_cast<qint64>(line.size()));
}

} // namespace DeskSprites
