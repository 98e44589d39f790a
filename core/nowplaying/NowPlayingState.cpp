#include "core/nowplaying/NowPlayingState.h"

#include <array>
#include <cmath>
#include <utility>

namespace FellowCore {

namespace {

constexpr std::array<std::string_view, 8> dance{"dance-1", "dance-2", "dance-3", "dance-4",
                                                "dance-5", "dance-6", "dance-7", "dance-2"};
constexpr std::array<std::string_view, 2> breath{"idle", "idle-breathe"};

/// Which of `count` poses, changing at `rate` a second, is due after `time`; the first before it began and
/// when there is no telling.
std::size_t phase(Seconds time, double rate, std::size_t count) {
    const double steps = std::floor(time * rate);
    if (!std::isfinite(steps) || steps < 0) {
        return 0;
    }
    return static_cast<std::size_t>(std::fmod(steps, static_cast<double>(count)));
}

bool plays(const std::optional<NowPlayingTrack>& track) {
    return track && track->playing;
}

} // namespace

void NowPlayingState::update(std::optional<NowPlayingTrack> newTrack, bool isAvailable, MonotonicInstant at) {
    if (plays(track) || plays(newTrack)) {
        quietSince = at;
    }
    if (newTrack && newTrack->isDifferent(track)) {
        announcement = newTrack->title;
        announcedAt = at;
    }
    track = std::move(newTrack);
    available = isAvailable;
    if (!available || !track) {
        announcement.reset();
    }
}

NowPlayingState::Mode NowPlayingState::mode(MonotonicInstant at) const {
    if (!available) {
        return Mode::idle;
    }
    if (plays(track)) {
        return Mode::dancing;
    }
    return at - quietSince >= dozesAfter ? Mode::dozing : Mode::idle;
}

std::optional<std::string> NowPlayingState::bubble(MonotonicInstant at) const {
    return at - announcedAt < bubbleTime ? announcement : std::nullopt;
}

std::string_view NowPlayingState::pose(MonotonicInstant at, bool reduceMotion) const {
    switch (mode(at)) {
    case Mode::dancing:
        return reduceMotion ? breath[phase(at.sinceOrigin, breathsPerSecond, breath.size())]
                            : dance[phase(at.sinceOrigin, dancePosesPerSecond, dance.size())];
    case Mode::dozing:
        return "doze";
    case Mode::idle:
        break;
    }
    return breath[phase(at - quietSince, breathsPerSecond, breath.size())];
}

} // namespace FellowCore
