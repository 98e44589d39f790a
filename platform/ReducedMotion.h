#pragma once

#include <functional>

namespace Platform {

/// Whether the desktop asks programs to animate less.
class ReducedMotion {
public:
    virtual ~ReducedMotion() = default;

    /// False until the desktop has answered, which it does after the start without holding it up, and
    /// wherever the desktop has no such setting.
    virtual bool isReduced() const = 0;

    /// Called on the main loop when the answer has changed, the first one to true included.
    std::function<void()> onChange;
};

} // namespace Platform
