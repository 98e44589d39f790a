#pragma once

#include "platform/Clock.h"

#include <QString>
#include <QTimer>

#include <functional>

namespace DeskSprites {

/// The digits on the pump while they roll from one figure to the next. Its timer runs only meanwhile.
class PumpDigitRoll {
public:
    static constexpr int frameMilliseconds = 1000 / 30;

    explicit PumpDigitRoll(const Platform::Clock& clock);

    /// Another row has rolled in.
    std::function<void()> onChange;

    /// Rolls to other digits, or shows them at once when motion is reduced or nobody sees it.
    void show(const QString& digits, bool moves);
    const QString& digits() const { return digits_; }
    const QString& oldDigits() const { return oldDigits_; }
    int rows() const;
    bool isRolling() const { return timer_.isActive(); }
    /// Ends a roll at once.
    void settle();

private:
    void tick();

    const Platform::Clock& clock_;
    QTimer timer_;
    QString digits_;
    QString oldDigits_;
    FellowCore::MonotonicInstant start_;
};

} // namespace DeskSprites
