#pragma once

#include "core/nowplaying/NowPlayingCommand.h"

#include <QSocketNotifier>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowMedia {

/// Cuts what arrives into commands; lines that are none are passed over, however long.
class MediaCommandLines {
public:
    /// The commands of the lines that `data` completes.
    std::vector<FellowCore::NowPlayingCommand> append(std::string_view data);

private:
    std::string pending_;
};

/// Commands from a pipe, until it ends.
class MediaInput {
public:
    explicit MediaInput(int descriptor);

    std::function<void(FellowCore::NowPlayingCommand command)> onCommand;
    std::function<void()> onEnd;

private:
    void read();

    int descriptor_;
    MediaCommandLines lines_;
    QSocketNotifier readable_;
};

} // namespace FellowMedia
