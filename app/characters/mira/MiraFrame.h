#pragma once

#include "core/breathing/BreathingSession.h"

namespace DeskSprites {

/// Whether Mira's body follows the breath, or only words and a slow fade do.
enum class MiraMotion { full, reduced };

/// Everything that can be seen of a running session at one moment, in the steps in which it is drawn: two
/// moments with equal frames look alike, and nothing is painted between them.
struct MiraFrame {
    static constexpr int poses = 6;       ///< drawings of the body, from empty to full
    static constexpr int glowLevels = 24; ///< steps of the glow above none
    static constexpr int ringSteps = 48;  ///< squares of the ring
    static constexpr int wordLevels = 8;  ///< steps in which words come up under reduced motion
    /// The least time between two frames of a breath; 30 a second and no more.
    static constexpr FellowCore::Seconds shortestWait = 0.034;

    FellowCore::BreathingPhase phase = FellowCore::BreathingPhase::settle;
    int round = 1;
    int pose = 0;                 ///< 0 empty ... 5 full; always 0 under reduced motion
    int glow = 0;                 ///< 0...`glowLevels`
    int ring = 0;                 ///< 0...`ringSteps`, of the phase
    int words = wordLevels;       ///< 0...`wordLevels`, of their ink
    FellowCore::Seconds wait = 0; ///< until the next frame can look different; above 0

    /// What is seen so many seconds into a session. Allocates nothing.
    static MiraFrame at(const FellowCore::BreathingTimeline& timeline, FellowCore::Seconds elapsed,
                        MiraMotion motion);
    /// Whether both look alike.
    bool looksLike(const MiraFrame& other) const;
};

} // namespace DeskSprites
