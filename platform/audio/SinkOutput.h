#pragma once

#include "core/sound/VoiceMixer.h"
#include "platform/AudioOutput.h"

#include <QAudioSink>
#include <QByteArray>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>

namespace Platform {

/// Mixes voices into Qt's audio sink.
///
/// The default device is looked up whenever a sound is due, because Qt does not reliably say when it changes.
/// The sink is closed a while after the last voice, so that silence costs no wake-ups. Data is pushed: in
/// pull mode the sink writes whole 20 ms periods only, and with a buffer short enough for a click's sound it
/// then waits for ever to be filled.
class SinkOutput final : public AudioOutput {
public:
    SinkOutput();
    ~SinkOutput() override;

    void play(AudioVoice voice, AudioSamples samples, FellowCore::StereoGains gains,
              FellowCore::SoundStart from) override;
    void setGains(AudioVoice voice, FellowCore::StereoGains gains) override;
    void stop(AudioVoice voice) override;

private:
    bool open();
    void close();
    void feed();
    void refill();
    bool deviceHasFailed() const;
    void warnOnce(const char* sentence);

    FellowCore::VoiceMixer mixer_;
    std::unique_ptr<QAudioSink> sink_;
    QIODevice* into_ = nullptr; ///< owned by the sink
    QByteArray deviceId_;
    QTimer tick_;
    QElapsedTimer sinceVoice_;    ///< since a voice last sounded
    QElapsedTimer sinceAccepted_; ///< since the device last took anything
    QByteArray buffer_;           ///< mixed, not yet taken by the device
    bool warned_ = false;
};

} // namespace Platform
