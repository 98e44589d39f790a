#include "app/services/InterfaceAudio.h"

#include "core/sound/SoundVolume.h"

#include <QMetaObject>

#include <utility>

namespace DeskSprites {

using FellowCore::InterfaceSoundCue;

InterfaceAudio::InterfaceAudio(FellowCore::Preferences& preferences, std::filesystem::path soundsFolder,
                               MakeOutput makeOutput, Clock clock, Playback playback)
    : preferences_(preferences), makeOutput_(std::move(makeOutput)), clock_(std::move(clock)),
      silent_(playback == Playback::silent), players_(std::move(soundsFolder)) {}

void InterfaceAudio::play(InterfaceSoundCue cue, FellowCore::Point position, const FellowCore::Rect& screen,
                          bool guidanceActive, bool characterMuted, double characterVolume) {
    const auto generation = ++playbackGeneration_;
    // A refused request leaves alone the permitted one it came too close to.
    if (silent_ || !gate_.permits(cue, enabled(), guidanceActive, characterMuted, clock_().sinceOrigin))
        return;
    pending_ = {generation, cue, FellowCore::stereoPan(position, screen), characterVolume};
    QMetaObject::invokeMethod(
        &context_, [this, generation] { begin(generation); }, Qt::QueuedConnection);
}

void InterfaceAudio::begin(std::uint64_t generation) {
    if (!pending_ || pending_->generation != generation)
        return;
    const auto due = *std::exchange(pending_, std::nullopt);
    const auto samples = players_.samples(FellowCore::resourceName(due.cue));
    if (!samples)
        return;
    if (!output_)
        output_ = makeOutput_();
    output_->stop(current_);
    current_ = generation;
    currentCue_ = due.cue;
    currentPan_ = due.pan;
    currentCharacterVolume_ = due.characterVolume;
    output_->play(current_, samples, currentGains(), {});
}

void InterfaceAudio::stop() {
    ++playbackGeneration_;
    pending_.reset();
    if (output_)
        output_->stop(current_);
}

bool InterfaceAudio::enabled() const {
    return preferences_.boolean(enabledKey).value_or(defaultEnabled);
}

void InterfaceAudio::setEnabled(bool enabled) {
    preferences_.setBoolean(enabledKey, enabled);
    if (!enabled)
        stop();
}

double InterfaceAudio::volume() const {
    return FellowCore::clampedVolume(preferences_.number(volumeKey).value_or(defaultVolume));
}

void InterfaceAudio::setVolume(double volume) {
    preferences_.setNumber(volumeKey, FellowCore::clampedVolume(volume));
    applyGains();
}

void InterfaceAudio::setCharacterVolume(double volume, InterfaceSoundCue cue) {
    if (pending_ && pending_->cue == cue)
        pending_->characterVolume = volume;
    if (!output_ || currentCue_ != cue)
        return;
    currentCharacterVolume_ = volume;
    applyGains();
}

void InterfaceAudio::applyGains() {
    if (output_)
        output_->setGains(current_, currentGains());
}

FellowCore::StereoGains InterfaceAudio::currentGains() const {
    return currentPan_ * FellowCore::combinedVolume(volume(), currentCharacterVolume_);
}

} // namespace DeskSprites
