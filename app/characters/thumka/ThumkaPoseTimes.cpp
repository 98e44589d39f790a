#include "app/characters/thumka/ThumkaPoseTimes.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::NowPlayingState;
using FellowCore::Seconds;

namespace {

/// From `time` to the next multiple of a step that takes `1 / rate` seconds.
Seconds untilNextStep(Seconds time, double rate) {
    return (std::floor(time * rate) + 1) / rate - time;
}

} // namespace

std::optional<Seconds> untilNextPose(const NowPlayingState& state, FellowCore::MonotonicInstant at,
                                     bool reduceMotion) {
    switch (state.mode(at)) {
    case NowPlayingState::Mode::dancing:
        return untilNextStep(at.sinceOrigin, reduceMotion ? NowPlayingState::breathsPerSecond
                                                          : NowPlayingState::dancePosesPerSecond);
    case NowPlayingState::Mode::dozing:
        return std::nullopt;
    case NowPlayingState::Mode::idle:
        break;
    }
    const Seconds quiet = std::max(0.0, at - state.quietSince);
    const Seconds breath = untilNextStep(quiet, NowPlayingState::breathsPerSecond);
    return state.available ? std::min(breath, NowPlayingState::dozesAfter - quiet) : breath;
}

} // namespace DeskSprites
