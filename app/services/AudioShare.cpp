#include "app/services/AudioShare.h"

#include <utility>

namespace DeskSprites {

using FellowCore::SoundStart;
using FellowCore::StereoGains;
using Platform::AudioOutput;
using Platform::AudioVoice;

struct AudioShare::State {
    MakeOutput makeOutput;
    std::unique_ptr<AudioOutput> output; ///< once a sound was due
    AudioVoice handles = 0;
};

/// Counts its voices in steps, beginning at a number of its own within a step.
class AudioShare::Handle final : public AudioOutput {
public:
    Handle(std::shared_ptr<State> state, AudioVoice number) : state_(std::move(state)), number_(number) {}

    void play(AudioVoice voice, Platform::AudioSamples samples, StereoGains gains, SoundStart from) override {
        if (!state_->output) {
            state_->output = state_->makeOutput();
        }
        state_->output->play(own(voice), std::move(samples), gains, from);
    }

    void setGains(AudioVoice voice, StereoGains gains) override {
        if (state_->output) {
            state_->output->setGains(own(voice), gains);
        }
    }

    void stop(AudioVoice voice) override {
        if (state_->output) {
            state_->output->stop(own(voice));
        }
    }

private:
    static constexpr AudioVoice step = 256; ///< more handles than anyone makes

    AudioVoice own(AudioVoice voice) const { return voice * step + number_; }

    std::shared_ptr<State> state_;
    AudioVoice number_;
};

AudioShare::AudioShare(MakeOutput makeOutput)
    : state_(std::make_shared<State>(State{std::move(makeOutput), nullptr, 0})) {}

std::unique_ptr<AudioOutput> AudioShare::makeHandle() {
    return std::make_unique<Handle>(state_, state_->handles++);
}

} // namespace DeskSprites
