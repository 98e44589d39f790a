#include "app/characters/pump/PumpDigitRoll.h"

#include "core/pump/PumpDigitMotion.h"

namespace DeskSprites {

using FellowCore::PumpDigitMotion;

PumpDigitRoll::PumpDigitRoll(const Platform::Clock& clock)
    : clock_(clock), digits_(QString::fromStdString(PumpDigitMotion::glyphs(std::nullopt))),
      oldDigits_(digits_) {
    timer_.setInterval(frameMilliseconds);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
}

void PumpDigitRoll::show(const QString& digits, bool moves) {
    if (digits == digits_) {
        return;
    }
    oldDigits_ = std::exchange(digits_, digits);
    start_ = clock_.monotonic();
    if (moves) {
        timer_.start();
    } else {
        settle();
    }
}

int PumpDigitRoll::rows() const {
    return PumpDigitMotion::rows(clock_.monotonic() - start_, !timer_.isActive());
}

void PumpDigitRoll::settle() {
    timer_.stop();
    oldDigits_ = digits_;
}

void PumpDigitRoll::tick() {
    if (clock_.monotonic() - start_ >= PumpDigitMotion::duration) {
        settle();
    }
    if (onChange) {
        onChange();
    }
}

} // namespace DeskSprites
