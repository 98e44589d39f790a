#include "platform/Clock.h"

#include <ctime>

namespace Platform {
namespace {

FellowCore::Seconds read(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace

FellowCore::Instant SystemClock::wall() const {
    return FellowCore::Instant::fromUnix(read(CLOCK_REALTIME));
}

FellowCore::MonotonicInstant SystemClock::monotonic() const {
    return {read(CLOCK_MONOTONIC)};
}

} // namespace Platform
