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

/// The sample to begin with.
double placeOf(Seconds offset) {
    return std::isfinite(offset) ? std::max(0.0, offset) * VoiceMixer::rate : 0.0;
}

double boundedRate(double rate) {
    return std::isfinite(rate) ? std::clamp(rate, SoundStart::slowest, SoundStart::fastest) : 1.0;
}

std::int16_t saturated(double sum) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(
        std::clamp(std::round(sum), double{Limits::min()}, double{Limits::max()}));
}

} // namespace

void VoiceMixer::start(Voice voice, Samples samples, StereoGains gains, SoundStart from) {
    const double place = placeOf(from.offset);
    if (!samples || place >= static_cast<double>(samples->size()))
        return;
    if (playing_.size() == voiceLimit)
        playing_.erase(playing_.begin());
    const StereoGains target{bounded(gains.left), bounded(gains.right)};
    // Only a sound's own beginning is silent; from anywhere else it would begin with a click.
    const StereoGains first = place > 0 ? StereoGains{} : target;
    playing_.push_back(
        {voice, std::move(samples), place, boundedRate(from.rate), first, target, releaseFrames, false});
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
    double sample = sampleAt(*playing.samples, playing.next);
    playing.next += playing.rate;
    if (playing.released)
        sample *= static_cast<double>(playing.releaseLeft--) / static_cast<double>(releaseFrames);
    const Frame frame{playing.now.left * sample, playing.now.right * sample};
    playing.now = {moved(playing.now.left, playing.target.left),
                   moved(playing.now.right, playing.target.right)};
    return frame;
}

double VoiceMixer::sampleAt(const std::vector<std::int16_t>& samples, double place) {
    const auto index = static_cast<std::size_t>(place);
    const double here = samples[index];
    const double next = index + 1 < samples.size() ? samples[index + 1] : 0.0;
    return here + (next - here) * (place - static_cast<double>(index));
}

bool VoiceMixer::hasEnded(const Playing& playing) {
    return playing.next >= static_cast<double>(playing.samples->size()) || playing.releaseLeft == 0;
}

VoiceMixer::Playing* VoiceMixer::find(Voice voice) {
    const auto found = std::ranges::find(playing_, voice, &Playing::voice);
    return found == playing_.end() ? nullptr : &*found;
}

} // namespace FellowCore
