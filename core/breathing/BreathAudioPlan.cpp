#include "core/breathing/BreathAudioPlan.h"

#include <algorithm>
#include <cmath>

namespace FellowCore {

namespace {

constexpr Seconds latestVoice = 0.08; ///< later than this a sentence would begin in the middle of a phase
constexpr Seconds gapAfterVoice = 0.12;
constexpr Seconds shortestWindow = 0.15; ///< a breath shorter than this would only click
constexpr double slowestRate = 0.5;
constexpr double fastestRate = 2;

Seconds usable(Seconds length) {
    return std::isfinite(length) ? std::max(0.0, length) : 0;
}

} // namespace

BreathAudioPlan::BreathAudioPlan(const BreathAudioContext& context) {
    const Seconds duration = usable(context.duration);
    const Seconds elapsed = std::min(usable(context.elapsed), duration);
    const Seconds spoken = std::min(usable(context.voiceDuration), duration);
    const Seconds sound = usable(context.breathDuration);

    if (context.voice && elapsed < std::min(latestVoice, spoken)) {
        voiceOffset = 0;
    }
    const Seconds begin = context.voice ? spoken + gapAfterVoice : 0;
    const Seconds window = duration - begin;
    if (window > 0) {
        breathRate = std::clamp(sound / window, slowestRate, fastestRate);
    }
    breathOffset = std::max(0.0, elapsed - begin) * breathRate;
    if (context.breath && elapsed < duration && window > shortestWindow && sound > breathOffset) {
        breathDelay = std::max(0.0, begin - elapsed);
    }
}

} // namespace FellowCore
