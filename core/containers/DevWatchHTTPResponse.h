#pragma once

#include <functional>
#include <map>
#include <string>

namespace FellowCore {

/// What a server answered to one request.
struct DevWatchHTTPResponse {
    using Headers = std::map<std::string, std::string, std::less<>>;

    int status = 0;   ///< 100...599
    Headers headers;  ///< by name in lower case; values without blanks around
    std::string body; ///< bytes, dechunked
};

} // namespace FellowCore
