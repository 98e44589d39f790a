#include "core/snake/SnakeStore.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace FellowCore {

SnakeStore::SnakeStore(Preferences& preferences, Post post)
    : preferences_(preferences), post_(std::move(post)) {}

int SnakeStore::bestScore() const {
    const std::int64_t stored = preferences_.integer(bestKey).value_or(0);
    return static_cast<int>(std::clamp<std::int64_t>(stored, 0, highestScore));
}

bool SnakeStore::sounds() const {
    return preferences_.boolean(soundsKey).value_or(true);
}

SnakeSpeed SnakeStore::speed() const {
    return SnakeSpeed(preferences_.integer(speedKey).value_or(SnakeSpeed::defaultLevel));
}

bool SnakeStore::rampAsEating() const {
    return preferences_.boolean(rampKey).value_or(true);
}

double SnakeStore::backdropDim() const {
    return std::clamp(preferences_.number(dimKey).value_or(defaultDim), 0.0, darkestDim);
}

void SnakeStore::setSounds(bool on) {
    const bool before = sounds();
    preferences_.setBoolean(soundsKey, on);
    postIf(sounds() != before);
}

void SnakeStore::setSpeed(SnakeSpeed chosen) {
    const SnakeSpeed before = speed();
    preferences_.setInteger(speedKey, SnakeSpeed(chosen.level).level);
    postIf(speed() != before);
}

void SnakeStore::setRampAsEating(bool on) {
    const bool before = rampAsEating();
    preferences_.setBoolean(rampKey, on);
    postIf(rampAsEating() != before);
}

void SnakeStore::setBackdropDim(double dim) {
    const double before = backdropDim();
    preferences_.setNumber(dimKey, std::clamp(dim, 0.0, darkestDim));
    postIf(backdropDim() != before);
}

bool SnakeStore::record(int score) {
    const int kept = std::min(score, highestScore);
    if (kept <= bestScore()) {
        return false;
    }
    preferences_.setInteger(bestKey, kept);
    postIf(true);
    return true;
}

void SnakeStore::forgetBest() {
    const int before = bestScore();
    preferences_.remove(bestKey);
    postIf(before != 0);
}

void SnakeStore::postIf(bool changed) const {
    if (changed && post_) {
        post_(preferencesChanged);
    }
}

} // namespace FellowCore
