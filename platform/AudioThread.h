#pragma once

#include "platform/AudioOutput.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <functional>
#include <memory>

namespace Platform {

/// The audio plugin library on a thread of its own.
///
/// Loading the library and reaching the sound server take tens of milliseconds, and a server that hangs takes
/// for ever; the thread that draws waits for neither. Nothing is loaded and no thread exists before the first
/// `play`. When the library cannot be loaded, one warning is logged and every sound is silence.
class AudioThread final : public AudioOutput {
public:
    /// `libraryFile` is the plugin library's path.
    explicit AudioThread(QString libraryFile);
    AudioThread(const AudioThread&) = delete;
    AudioThread& operator=(const AudioThread&) = delete;
    /// Sounds end at once. Waits for the thread, but no longer than a second.
    ~AudioThread() override;

    void play(AudioVoice voice, AudioSamples samples, FellowCore::StereoGains gains,
              FellowCore::SoundStart from) override;
    void setGains(AudioVoice voice, FellowCore::StereoGains gains) override;
    void stop(AudioVoice voice) override;

private:
    class Stage;

    void start();
    void post(std::function<void(AudioOutput&)> work);

    QString libraryFile_;
    std::unique_ptr<QThread> thread_;
    Stage* stage_ = nullptr; ///< lives on the thread, which deletes it when it ends
};

} // namespace Platform
