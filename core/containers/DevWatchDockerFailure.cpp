#include "core/containers/DevWatchDockerFailure.h"

namespace FellowCore {

DevWatchDockerFailure::DevWatchDockerFailure(Kind kind, const std::string& reason)
    : DevWatchDockerFailure(kind, reason, 0) {}

DevWatchDockerFailure::DevWatchDockerFailure(Kind kind, const std::string& reason, int status)
    : std::runtime_error(reason), kind_(kind), status_(status) {}

DevWatchDockerFailure DevWatchDockerFailure::ofStatus(int status) {
    return {Kind::status, "The engine answered with status " + std::to_string(status) + ".", status};
}

} // namespace FellowCore
