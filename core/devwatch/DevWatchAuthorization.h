#pragma once

#include <cstdint>
#include <mutex>

namespace FellowCore {

/// A generation that background work reads once and compares before it acts, so that a confirmation that was
/// withdrawn meanwhile stops it. May be used from any thread.
class DevWatchAuthorization {
public:
    /// Ends the validity of every generation given so far; answers the new one.
    std::uint64_t advance();
    std::uint64_t current() const;
    bool matches(std::uint64_t generation) const;

private:
    mutable std::mutex lock_;
    std::uint64_t value_ = 0;
};

} // namespace FellowCore
