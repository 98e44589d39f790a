#include "core/sound/VoiceMixer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace FellowCore {

namespace {

double bounded(double gain) {
    return std::isfinite(gain) ? std::clamp(gain, 0.0, 1.0) : 0.0;
}

double moved(double from, double to) {
    constexpr double step = 1.0 / static_cast<double>(VoiceMixer::rampFrames);
    return from + std::clamp(to - from, -step, step);
}

std::int16_t saturated(double sum) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(
        std::clamp(std::round(sum), double{Limits::min()}, double{Limits::max()}));
}

} // namespace

void VoiceMixer::start(Voice voice, Samples samples, StereoGains gains) {
    if (!samples || samples->empty())
        return;
    if (playing_.size() == voiceLimit)
        playing_.erase(playing_.begin());
    const StereoGains target{bounded(gains.left), bounded(gains.right)};
    playing_.push_back({voice, std::move(samples), 0, target, target, releaseFrames, false});
}

void VoiceMixer::setGains(Voice voice, StereoGains gains) {
    if (auto* playing = find(voice))
        playing->target = {bounded(gains.left), bounded(gains.right)};
}

void VoiceMixer::release(Voice voice) {
    if (auto* playing = find(voice))
        playing->released = true;
}

void VoiceMixer::mix(std::span<std::int16_t> stereo) {
    std::size_t index = 0;
    for (; index + 1 < stereo.size(); index += 2) {
        Frame sum;
        for (auto& playing : playing_) {
            const auto frame = nextFrame(playing);
            sum.left += frame.left;
            sum.right += frame.right;
        }
        stereo[index] = saturated(sum.left);
        stereo[index + 1] = saturated(sum.right);
    }
    if (index < stereo.size())
        stereo[index] = 0;
    std::erase_if(playing_, hasEnded);
}

VoiceMixer::Frame VoiceMixer::nextFrame(Playing& playing) {
    if (hasEnded(playing))
        return {};
    double sample = (*playing.samples)[playing.next++];
    if (playing.released)
        sample *= static_cast<double>(playing.releaseLeft--) / static_cast<double>(releaseFrames);
    const Frame frame{playing.now.left * sample, playing.now.right * sample};
    playing.now = {moved(playing.now.left, playing.target.left),
                   moved(playing.now.right, playing.target.right)};
    return frame;
}

bool VoiceMixer::hasEnded(const Playing& playing) {
    return playing.next == playing.samples->size() || playing.releaseLeft == 0;
}

VoiceMixer::Playing* VoiceMixer::find(Voice voice) {
    const auto found = std::ranges::find(playing_, voice, &Playing::voice);
    return found == playing_.end() ? nullptr : &*found;
}

} // namespace FellowCore
