#include "app/characters/mira/MiraFrame.h"

#include <algorithm>
#include <cmath>

namespace DeskSprites {

using FellowCore::BreathingPhase;
using FellowCore::BreathingTimeline;
using FellowCore::Seconds;

namespace {

constexpr Seconds fadeLength = 0.8;      ///< in which words come up under reduced motion
constexpr Seconds reducedRingStep = 1;   ///< the ring goes on by whole seconds there
constexpr Seconds reducedGlowWait = 0.1; ///< between two looks at the slow fade
constexpr Seconds leastWait = 0.001;
constexpr double nearly = 1e-6; ///< a step that has begun but for a rounding

bool movesTheBody(BreathingPhase phase) {
    return phase == BreathingPhase::inhale || phase == BreathingPhase::sip || phase == BreathingPhase::exhale;
}

int steps(double share, int count) {
    return std::clamp(static_cast<int>(std::lround(share * count)), 0, count);
}

/// How many seconds of the phase the ring takes for one of its steps.
Seconds ringStep(Seconds phaseDuration, MiraMotion motion) {
    return motion == MiraMotion::reduced ? reducedRingStep : phaseDuration / MiraFrame::ringSteps;
}

Seconds untilNextLook(BreathingPhase phase, Seconds intoPhase, Seconds untilRing, MiraMotion motion) {
    if (motion == MiraMotion::full) {
        return movesTheBody(phase) ? MiraFrame::shortestWait : std::max(untilRing, MiraFrame::shortestWait);
    }
    if (intoPhase < fadeLength) {
        return fadeLength / MiraFrame::wordLevels;
    }
    return movesTheBody(phase) ? reducedGlowWait : untilRing;
}

} // namespace

MiraFrame MiraFrame::at(const BreathingTimeline& timeline, Seconds elapsed, MiraMotion motion) {
    const bool reduced = motion == MiraMotion::reduced;
    const double fullness = timeline.expansion(elapsed);
    const Seconds duration = timeline.phaseDuration(elapsed);
    const Seconds into = timeline.phaseElapsed(elapsed);
    const Seconds each = ringStep(duration, motion);
    const double ringsDone = std::floor(into / each + nearly);
    const Seconds untilRing = (ringsDone + 1) * each - into;

    MiraFrame frame;
    frame.phase = timeline.phase(elapsed);
    frame.round = timeline.round(elapsed);
    frame.pose = reduced ? 0 : steps(fullness, poses - 1);
    frame.glow = steps(fullness, glowLevels);
    frame.ring = steps(ringsDone * each / duration, ringSteps);
    frame.words = reduced ? steps(into / fadeLength, wordLevels) : wordLevels;
    const Seconds wanted = untilNextLook(frame.phase, into, untilRing, motion);
    frame.wait = std::max(leastWait, std::min(wanted, duration - into));
    return frame;
}

bool MiraFrame::looksLike(const MiraFrame& other) const {
    return phase == other.phase && round == other.round && pose == other.pose && glow == other.glow &&
           ring == other.ring && words == other.words;
}

} // namespace DeskSprites
