#include "app/characters/dhiru/DhiruAwake.h"

#include <utility>

namespace DeskSprites {

namespace {
constexpr int patienceMilliseconds = 2000;
} // namespace

DhiruAwake::DhiruAwake(FellowCore::Preferences& preferences, Make make)
    : preferences_(preferences), make_(std::move(make)),
      wanted_(preferences.boolean(preferenceKey).value_or(false)) {
    patience_.setSingleShot(true);
    patience_.setInterval(patienceMilliseconds);
    connect(&patience_, &QTimer::timeout, this, &DhiruAwake::changed);
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
    if (!holds) {
        hold_.reset();
        patience_.stop();
        return;
    }
    hold_ = make_();
    hold_->onChanged = [this] { holdChanged(); };
    if (!isHeld()) {
        patience_.start();
    }
}

void DhiruAwake::holdChanged() {
    if (isHeld()) {
        patience_.stop();
    } else {
        patience_.start(); // a service that restarts is asked again
    }
    Q_EMIT changed();
}

QString DhiruAwake::words() const {
    if (isHeld()) {
        return tr("Keeping awake");
    }
    return hold_ && !patience_.isActive() ? tr("This session cannot be kept awake.") : QString();
}

} // namespace DeskSprites
