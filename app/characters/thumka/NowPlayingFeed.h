#pragma once

#include "app/characters/thumka/NowPlayingNews.h"
#include "core/nowplaying/NowPlayingCommand.h"
#include "core/nowplaying/NowPlayingLines.h"
#include "core/nowplaying/NowPlayingParser.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace DeskSprites {

/// How long the feed waits for what.
struct NowPlayingPatience {
    using Time = std::chrono::milliseconds;

    Time firstPause{1000}; ///< until a helper that ended is started again; doubled each time
    Time longestPause{60000};
    Time steady{60000};    ///< after this long a helper counts as well: the next pause is the first again
    Time beforeTerm{500};  ///< for a helper to see that its input has ended
    Time beforeKill{1000}; ///< and after TERM
    Time betweenNews{100}; ///< at least, however fast the helper writes
};

/// Runs the media helper and makes news of what it writes: starts it again when it ends, and skips what is no
/// line of its stream. Lives on a thread of its own, because a line may hold a cover of megabytes.
class NowPlayingFeed : public QObject {
    Q_OBJECT

public:
    NowPlayingFeed(QString program, NowPlayingPatience patience);
    ~NowPlayingFeed() override;

    void start();
    /// Lets the helper end: by the end of its input, then by TERM, then by KILL. Does not wait for it.
    void stop();
    /// Nothing while no helper runs, and for one that does not read what it is told.
    void send(FellowCore::NowPlayingCommand command);

Q_SIGNALS:
    void published(const DeskSprites::NowPlayingNews& news);

private:
    void launch();
    void letEnd();
    void ended();
    void restartLater();
    void read();
    void consume(const std::string& line);
    void showCover(const std::vector<std::uint8_t>* artwork);
    void forget(NowPlayingNews::Following following);
    void publishSoon();

    QString program_;
    NowPlayingPatience patience_;
    std::unique_ptr<QProcess> process_; ///< while a helper runs or is on its way out
    bool following_ = false;
    bool ending_ = false; ///< the helper that runs was let go
    FellowCore::NowPlayingLines lines_;
    FellowCore::NowPlayingParser parser_;
    std::vector<std::uint8_t> artwork_; ///< what the cover was made of
    NowPlayingNews news_;
    NowPlayingPatience::Time pause_;
    QElapsedTimer lived_;
    QTimer restart_;
    QTimer urge_; ///< the next means of ending the helper
    QTimer publish_;
    QElapsedTimer lastNews_;
    bool complained_ = false;
};

} // namespace DeskSprites
