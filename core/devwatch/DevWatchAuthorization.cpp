#include "core/devwatch/DevWatchAuthorization.h"

namespace FellowCore {

std::uint64_t DevWatchAuthorization::advance() {
    const std::lock_guard hold(lock_);
    return ++value_;
}

std::uint64_t DevWatchAuthorization::current() const {
    const std::lock_guard hold(lock_);
    return value_;
}

bool DevWatchAuthorization::matches(std::uint64_t generation) const {
    const std::lock_guard hold(lock_);
    return value_ == generation;
}

} // namespace FellowCore
