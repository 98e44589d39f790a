#include "platform/audio/SinkOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QDebug>
#include <QMediaDevices>

#include <chrono>
#include <utility>
#include <vector>

namespace Platform {

namespace {

using namespace std::chrono_literals;

constexpr int channels = 2;
constexpr qsizetype bytesPerFrame = channels * sizeof(std::int16_t);
constexpr auto bufferLength = 60ms; // what a sound waits at most before it is heard
constexpr auto tickLength = 15ms;
constexpr auto leadIn = 20ms;        // silence first, because devices swallow the moment in which they wake
constexpr auto closeAfter = 1500ms;  // silence after which the sink is closed
constexpr auto giveUpAfter = 5000ms; // a device that takes nothing for so long has hung

QAudioFormat ourFormat() {
    QAudioFormat format;
    format.setSampleRate(FellowCore::VoiceMixer::rate);
    format.setChannelCount(channels);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}

qint32 bytesFor(std::chrono::microseconds length) {
    return ourFormat().bytesForDuration(length.count());
}

} // namespace

SinkOutput::SinkOutput() {
    tick_.setTimerType(Qt::PreciseTimer);
    tick_.setInterval(tickLength);
    QObject::connect(&tick_, &QTimer::timeout, &tick_, [this] { feed(); });
}

SinkOutput::~SinkOutput() {
    close();
}

void SinkOutput::play(AudioVoice voice, AudioSamples samples, FellowCore::StereoGains gains,
                      FellowCore::SoundStart from) {
    if (!open())
        return;
    mixer_.start(voice, std::move(samples), gains, from);
    sinceVoice_.start();
    feed();
}

void SinkOutput::setGains(AudioVoice voice, FellowCore::StereoGains gains) {
    mixer_.setGains(voice, gains);
}

void SinkOutput::stop(AudioVoice voice) {
    mixer_.release(voice);
}

/// Makes sure that the sink plays on the device which is the default now.
bool SinkOutput::open() {
    const auto device = QMediaDevices::defaultAudioOutput();
    if (device.isNull()) {
        close();
        warnOnce("No sounds will play: there is no sound device.");
        return false;
    }
    if (sink_ && device.id() == deviceId_ && !deviceHasFailed())
        return true;
    close();
    sink_ = std::make_unique<QAudioSink>(device, ourFormat());
    sink_->setBufferSize(bytesFor(bufferLength));
    into_ = sink_->start();
    if (!into_ || sink_->error() != QAudio::NoError) {
        close();
        warnOnce("No sounds will play: the sound device cannot be opened.");
        return false;
    }
    deviceId_ = device.id();
    buffer_.fill('\0', bytesFor(leadIn));
    sinceAccepted_.start();
    tick_.start();
    return true;
}

void SinkOutput::close() {
    tick_.stop();
    mixer_.clear();
    buffer_.clear();
    into_ = nullptr;
    if (sink_)
        sink_->stop();
    sink_.reset();
}

void SinkOutput::feed() {
    if (deviceHasFailed() || sinceAccepted_.hasExpired(giveUpAfter.count())) {
        close();
        return;
    }
    if (!mixer_.isSilent())
        sinceVoice_.start();
    else if (sinceVoice_.hasExpired(closeAfter.count())) {
        close();
        return;
    }
    refill();
    // The device may take less than it has room for; the rest goes first next time.
    const auto taken = into_->write(buffer_.constData(), buffer_.size());
    if (taken <= 0)
        return;
    buffer_.remove(0, static_cast<qsizetype>(taken));
    sinceAccepted_.start();
}

/// Mixes what the device has room for beyond what still waits for it.
void SinkOutput::refill() {
    const auto frames = (sink_->bytesFree() - buffer_.size()) / bytesPerFrame;
    if (frames <= 0)
        return;
    std::vector<std::int16_t> fresh(static_cast<std::size_t>(frames * channels));
    mixer_.mix(fresh);
    buffer_.append(reinterpret_cast<const char*>(fresh.data()), frames * bytesPerFrame);
}

bool SinkOutput::deviceHasFailed() const {
    // An underrun is no failure: a machine that was busy for a moment plays on.
    return sink_->state() == QAudio::StoppedState ||
           (sink_->error() != QAudio::NoError && sink_->error() != QAudio::UnderrunError);
}

void SinkOutput::warnOnce(const char* sentence) {
    if (!std::exchange(warned_, true))
        qWarning("%s", sentence);
}

} // namespace Platform
