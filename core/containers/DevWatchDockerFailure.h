#pragma once

#include <stdexcept>
#include <string>

namespace FellowCore {

/// Why the engine did not do what it was asked.
class DevWatchDockerFailure : public std::runtime_error {
public:
    enum class Kind {
        status,           ///< it answered with another HTTP status than hoped for, given by `status`
        unavailable,      ///< no socket of the user's own, or no usable answer from it
        invalidResponse,  ///< it answered with something else than its interface says
        changedContainer, ///< the container is not, or no longer, the one that was confirmed
        unsupportedAPI,   ///< it is too old for a polite stop
    };

    /// For every kind but `status`.
    DevWatchDockerFailure(Kind kind, const std::string& reason);
    static DevWatchDockerFailure ofStatus(int status);

    Kind kind() const { return kind_; }
    int status() const { return status_; } ///< 100...599; 0 unless the kind is `status`

private:
    DevWatchDockerFailure(Kind kind, const std::string& reason, int status);

    Kind kind_;
    int status_ = 0;
};

} // namespace FellowCore
