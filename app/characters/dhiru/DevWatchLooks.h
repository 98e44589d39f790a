#pragma once

#include "core/base/Instant.h"

#include <QTimer>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>

namespace DeskSprites {

/// How soon to look, when something happened `age` ago and is to be looked at so long after it; nothing once
/// all of that is over.
inline std::optional<FellowCore::Seconds> devWatchNextLook(FellowCore::Seconds age,
                                                           std::initializer_list<FellowCore::Seconds> looks) {
    for (const FellowCore::Seconds look : looks) {
        if (look > age) {
            return look - age;
        }
    }
    return std::nullopt;
}

/// The sooner of two, where there are any.
inline std::optional<FellowCore::Seconds> devWatchSooner(std::optional<FellowCore::Seconds> one,
                                                         std::optional<FellowCore::Seconds> other) {
    return one && other ? std::optional(*one < *other ? *one : *other) : one ? one : other;
}

/// Starts a timer for a look. Soon ones come exactly, so that they never come too early and then once more;
/// the others when the machine is awake anyway.
inline void devWatchStart(QTimer& timer, FellowCore::Seconds delay) {
    constexpr FellowCore::Seconds soon = 4;
    timer.setTimerType(delay < soon ? Qt::PreciseTimer : Qt::CoarseTimer);
    timer.start(static_cast<int>(std::ceil(std::max(delay, 0.0) * 1000)));
}

} // namespace DeskSprites
