// fellow-media: follows the media players on the session bus and tells what plays, one line of JSON for each
// change, until nobody listens. Takes commands for the shown player, one word a line.

#include "core/nowplaying/NowPlayingHelper.h"
#include "helpers/media/MediaFollower.h"
#include "helpers/media/MediaInput.h"
#include "platform/linux/Buses.h"

#include <QCoreApplication>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

namespace Helper = FellowCore::NowPlayingHelper;

int run(int count, char** values) {
    const QCoreApplication application(count, values);
    if (count > 1) {
        std::fputs("usage: fellow-media (it takes no arguments; commands come on standard input)\n", stderr);
        return Helper::misused;
    }
    const QDBusConnection bus = Platform::sessionBusIfAny();
    if (!bus.isConnected()) {
        std::fputs("fellow-media: there is no session bus to follow media players on\n", stderr);
        return Helper::noSessionBus;
    }
    FellowMedia::MediaFollower follower(bus, STDOUT_FILENO);
    FellowMedia::MediaInput input(STDIN_FILENO);
    input.onCommand = [&](FellowCore::NowPlayingCommand command) { follower.tell(command); };
    // A picture that is being read from a share that hangs must not hold up the end, so nothing is waited
    // for.
    input.onEnd = follower.onClosed = [] { std::_Exit(Helper::ended); };
    follower.onLost = [] {
        std::fputs("fellow-media: the session bus is gone\n", stderr);
        std::_Exit(Helper::noSessionBus);
    };
    follower.start();
    return QCoreApplication::exec();
}

} // namespace

int main(int count, char** values) {
    std::signal(SIGPIPE, SIG_IGN);
    // Whoever started us may end without a word.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    return run(count, values);
}
