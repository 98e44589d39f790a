#pragma once

#include "platform/AudioOutput.h"

#include <functional>
#include <memory>

namespace DeskSprites {

/// One loudspeaker for everyone who makes sounds, so that there is one audio library, one thread and one open
/// device however many do. Used from one thread.
class AudioShare {
public:
    using MakeOutput = std::function<std::unique_ptr<Platform::AudioOutput>()>;

    /// `makeOutput` runs when the first sound of all is due.
    explicit AudioShare(MakeOutput makeOutput);

    /// A handle on the loudspeaker whose voices never meet those of another handle. Handles may outlive the
    /// share; the output ends with the last of them.
    std::unique_ptr<Platform::AudioOutput> makeHandle();

private:
    struct State;
    class Handle;

    std::shared_ptr<State> state_;
};

} // namespace DeskSprites
