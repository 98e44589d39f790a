#pragma once

#include "platform/Clock.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace DeskSprites {

/// When Dhiru taps to remind of a quiet server: once when he begins to stand for it, and then every ten
/// minutes. Between two tappings nothing runs but the wait for the next.
class DhiruTaps {
public:
    static constexpr int periodMilliseconds = 10 * 60 * 1000;

    explicit DhiruTaps(const Platform::Clock& clock);

    /// Another beat has come, or the tapping is over.
    std::function<void()> onBeat;

    /// Whether there is a quiet server and someone may see movement.
    void setWanted(bool wanted);
    /// How long ago the tapping began; nothing while he does not tap.
    std::optional<FellowCore::Seconds> elapsed() const;
    bool isTapping() const { return beat_.isActive(); }

private:
    void begin();
    void beat();

    const Platform::Clock& clock_;
    QTimer next_;
    QTimer beat_; ///< runs only during the tapping
    FellowCore::MonotonicInstant start_;
};

} // namespace DeskSprites
