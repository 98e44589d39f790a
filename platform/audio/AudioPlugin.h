#pragma once

#include "platform/AudioOutput.h"

#include <QObject>

namespace Platform {

/// The way into the audio library, for QPluginLoader.
class AudioPlugin final : public QObject, public AudioOutputFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "deskfellow.AudioOutputFactory/2")
    Q_INTERFACES(Platform::AudioOutputFactory)

public:
    std::unique_ptr<AudioOutput> makeAudioOutput() override;
};

} // namespace Platform
