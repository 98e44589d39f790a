#pragma once

#include <functional>
#include <memory>

namespace Platform {

/// Keeps the machine from sleeping and the screen from going dark for want of input, for as long as it lives.
/// The system lets go by itself when this program ends in whatever way.
class KeepAwake {
public:
    virtual ~KeepAwake() = default;
    /// Whether at least one of the session's services holds the machine awake. Asking them takes a moment, so
    /// it is false at first.
    virtual bool isHeld() const = 0;
    /// What `isHeld` says is something else now.
    std::function<void()> onChanged;
};

/// Asks the session's services, without waiting for their answers. Main thread only.
std::unique_ptr<KeepAwake> keepAwake();

} // namespace Platform
