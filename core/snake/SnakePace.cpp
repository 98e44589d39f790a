#include "core/snake/SnakePace.h"

#include <cmath>

namespace FellowCore {

Seconds SnakePace::begin(MonotonicInstant now, Seconds interval) {
    due_ = now + interval;
    return interval;
}

Seconds SnakePace::stepped(MonotonicInstant now, Seconds interval) {
    const Seconds late = now - due_;
    if (std::abs(late) > interval * mostMadeUp) {
        return begin(now, interval);
    }
    due_ = due_ + interval;
    return interval - late;
}

} // namespace FellowCore
