#include "platform/audio/AudioPlugin.h"

#include "platform/audio/SinkOutput.h"

namespace Platform {

std::unique_ptr<AudioOutput> AudioPlugin::makeAudioOutput() {
    return std::make_unique<SinkOutput>();
}

} // namespace Platform
