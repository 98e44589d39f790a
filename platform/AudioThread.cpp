#include "platform/AudioThread.h"

#include <QDebug>
#include <QPluginLoader>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace Platform {

namespace {

/// Ends the process before the audio libraries clean up, which would destroy a lock that the thread still
/// holds. Everything that is ours has been put in order by then.
void leaveAtOnce(int status, void*) {
    std::fflush(nullptr);
    ::_exit(status);
}

} // namespace

/// What lives on the thread: the library and its output, made when first asked for.
class AudioThread::Stage final : public QObject {
public:
    explicit Stage(QString libraryFile) : libraryFile_(std::move(libraryFile)) {}

    AudioOutput* output() {
        if (!std::exchange(asked_, true))
            load();
        return output_.get();
    }

private:
    void load() {
        QPluginLoader loader(libraryFile_);
        if (auto* factory = qobject_cast<AudioOutputFactory*>(loader.instance()))
            output_ = factory->makeAudioOutput();
        else
            qWarning().noquote() << "No sounds will play: the audio library cannot be loaded."
                                 << loader.errorString();
    }

    QString libraryFile_;
    bool asked_ = false;
    std::unique_ptr<AudioOutput> output_;
};

AudioThread::AudioThread(QString libraryFile) : libraryFile_(std::move(libraryFile)) {}

AudioThread::~AudioThread() {
    if (!thread_)
        return;
    thread_->quit();
    constexpr unsigned long patience = 1000;
    if (thread_->wait(patience))
        return;
    // A thread that hangs in the sound server cannot be ended, and leaving the program must not wait for a
    // sound.
    static_cast<void>(thread_.release());
    ::on_exit(leaveAtOnce, nullptr);
}

void AudioThread::play(AudioVoice voice, AudioSamples samples, FellowCore::StereoGains gains,
                       FellowCore::SoundStart from) {
    start();
    post([voice, samples = std::move(samples), gains, from](AudioOutput& output) {
        output.play(voice, samples, gains, from);
    });
}

void AudioThread::setGains(AudioVoice voice, FellowCore::StereoGains gains) {
    post([voice, gains](AudioOutput& output) { output.setGains(voice, gains); });
}

void AudioThread::stop(AudioVoice voice) {
    post([voice](AudioOutput& output) { output.stop(voice); });
}

void AudioThread::start() {
    if (thread_)
        return;
    thread_ = std::make_unique<QThread>();
    thread_->setObjectName(QStringLiteral("audio"));
    stage_ = new Stage(libraryFile_);
    stage_->moveToThread(thread_.get());
    QObject::connect(thread_.get(), &QThread::finished, stage_, &QObject::deleteLater);
    thread_->start();
}

void AudioThread::post(std::function<void(AudioOutput&)> work) {
    if (!stage_)
        return;
    QMetaObject::invokeMethod(
        stage_,
        [stage = stage_, work = std::move(work)] {
            if (auto* output = stage->output())
                work(*output);
        },
        Qt::QueuedConnection);
}

} // namespace Platform
