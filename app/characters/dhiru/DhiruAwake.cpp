#include "app/characters/dhiru/DhiruAwake.h"

#include <utility>

namespace DeskSprites {

namespace {
constexpr int lookMilliseconds = 400;
constexpr int mostLooks = 5;
} // namespace

DhiruAwake::DhiruAwake(FellowCore::Preferences& preferences, Make make)
    : preferences_(preferences), make_(std::move(make)),
      wanted_(preferences.boolean(preferenceKey).value_or(false)) {
    look_.setInterval(lookMilliseconds);
    connect(&look_, &QTimer::timeout, this, &DhiruAwake::look);
}

DhiruAwake::~DhiruAwake() = default;

void DhiruAwake::setWanted(bool wanted) {
    if (std::exchange(wanted_, wanted) != wanted) {
        preferences_.setBoolean(preferenceKey, wanted);
        update();
        Q_EMIT changed();
    }
}

void DhiruAwake::setDesktopActive(bool active) {
    if (std::exchange(active_, active) != active) {
        update();
        Q_EMIT changed();
    }
}

void DhiruAwake::update() {
    const bool holds = wanted_ && active_;
    if (holds == (hold_ != nullptr)) {
        return;
    }
    looks_ = 0;
    if (holds) {
        hold_ = make_();
        look_.start();
    } else {
        hold_.reset();
        look_.stop();
    }
}

void DhiruAwake::look() {
    ++looks_;
    if (isHeld() || looks_ == mostLooks) {
        look_.stop();
        Q_EMIT changed();
    }
}

QString DhiruAwake::words() const {
    if (isHeld()) {
        return tr("Keeping awake");
    }
    return hold_ && looks_ == mostLooks ? tr("This session cannot be kept awake.") : QString();
}

} // namespace DeskSprites
