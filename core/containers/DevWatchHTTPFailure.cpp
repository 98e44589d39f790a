#include "core/containers/DevWatchHTTPFailure.h"

#include <system_error>

namespace FellowCore {

DevWatchHTTPFailure::DevWatchHTTPFailure(Kind kind, const std::string& reason)
    : DevWatchHTTPFailure(kind, reason, 0) {}

DevWatchHTTPFailure::DevWatchHTTPFailure(Kind kind, const std::string& reason, int systemError)
    : std::runtime_error(reason), kind_(kind), systemError_(systemError) {}

DevWatchHTTPFailure DevWatchHTTPFailure::syscall(const char* call, int systemError) {
    return {Kind::syscall, std::string(call) + ": " + std::generic_category().message(systemError),
            systemError};
}

} // namespace FellowCore
