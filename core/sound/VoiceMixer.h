#pragma once

#include "core/sound/SoundStart.h"
#include "core/sound/StereoPan.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace FellowCore {

/// Sums short mono sounds into stereo, each with gains of its own. Changes of gain and early ends are ramped,
/// so that none is heard as a click. Used from one thread.
class VoiceMixer {
public:
    using Samples = std::shared_ptr<const std::vector<std::int16_t>>;
    using Voice = std::uint64_t; ///< the caller's number for one sounding of a sound

    static constexpr int rate = 48'000;                ///< frames a second
    static constexpr std::size_t rampFrames = 240;     ///< 5 ms: full scale in a change of gain
    static constexpr std::size_t releaseFrames = 2880; ///< 60 ms: a voice that is released dies away
    static constexpr std::size_t voiceLimit = 16;      ///< one more takes the place of the oldest

    /// Begins at the sound's first sample, or where `from` says: then with a ramp, and between two samples on
    /// the straight line from one to the other. Absent or empty samples are no voice. Gains are forced into
    /// 0...1; one that is not finite is 0.
    void start(Voice voice, Samples samples, StereoGains gains, SoundStart from = {});

    /// Moves a sounding voice to new gains; a voice that has ended is ignored, as in `release`.
    void setGains(Voice voice, StereoGains gains);

    /// Lets a voice die away.
    void release(Voice voice);

    /// Ends every voice at once.
    void clear() { playing_.clear(); }

    bool isSilent() const { return playing_.empty(); }

    /// Writes the next frames, left and right in turn, over all of `stereo`, and moves on. The sum saturates.
    /// An odd last element is no frame and becomes 0.
    void mix(std::span<std::int16_t> stereo);

private:
    struct Frame {
        double left = 0;
        double right = 0;
    };
    struct Playing {
        Voice voice;
        Samples samples;
        double next; ///< the place in `samples` that is heard next
        double rate;
        StereoGains now;
        StereoGains target;
        std::size_t releaseLeft; ///< frames until a released voice is gone; `releaseFrames` while it is held
        bool released;
    };

    Playing* find(Voice voice);
    static Frame nextFrame(Playing& playing);
    static double sampleAt(const std::vector<std::int16_t>& samples, double place);
    static bool hasEnded(const Playing& playing);

    std::vector<Playing> playing_;
};

} // namespace FellowCore
