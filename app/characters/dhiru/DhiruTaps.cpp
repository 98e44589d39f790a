#include "app/characters/dhiru/DhiruTaps.h"

#include "core/devwatch/DevWatchPose.h"

#include <cmath>

namespace DeskSprites {

using FellowCore::Seconds;
using namespace FellowCore::DevWatchPose;

DhiruTaps::DhiruTaps(const Platform::Clock& clock) : clock_(clock) {
    next_.setSingleShot(true);
    next_.setTimerType(Qt::VeryCoarseTimer);
    next_.setInterval(periodMilliseconds);
    beat_.setSingleShot(true);
    beat_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&next_, &QTimer::timeout, &next_, [this] { begin(); });
    QObject::connect(&beat_, &QTimer::timeout, &beat_, [this] { beat(); });
}

void DhiruTaps::setWanted(bool wanted) {
    if (!wanted) {
        next_.stop();
        beat_.stop();
    } else if (!next_.isActive()) {
        begin();
    }
}

std::optional<Seconds> DhiruTaps::elapsed() const {
    return isTapping() ? std::optional(clock_.monotonic() - start_) : std::nullopt;
}

void DhiruTaps::begin() {
    start_ = clock_.monotonic();
    next_.start();
    beat();
}

void DhiruTaps::beat() {
    const Seconds gone = clock_.monotonic() - start_;
    if (gone < reminderLength) {
        const Seconds within = std::fmod(gone, reminderBeat);
        beat_.start(static_cast<int>(std::ceil((reminderBeat - within) * 1000)));
    }
    onBeat();
}

} // namespace DeskSprites
