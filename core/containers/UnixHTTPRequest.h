#pragma once

#include "core/base/Instant.h"
#include "core/containers/DevWatchHTTPResponse.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace FellowCore {

constexpr Seconds longestUnixHTTPTimeout = 10;
constexpr std::size_t leastUnixHTTPBytes = 1024;

/// Sends one request without a body over a Unix socket of the user's own and gives the answer once the server
/// has closed the connection. Blocks, so it belongs on a background queue. The socket must belong to the
/// user, and so must the process that listens on it, whatever has become of the file in between.
///
/// `method` is "GET" or "POST"; `target` begins with "/" and holds printable ASCII without blanks; `timeout`
/// is above 0 and at most 10 seconds, and covers connecting, sending and receiving together, counted on the
/// monotonic clock; `maxBytes` is at least 1024 and bounds all that is received, the head included. Throws
/// `DevWatchHTTPFailure` of any kind; the connection is closed either way, and nothing is tried twice.
DevWatchHTTPResponse unixHTTPRequest(const std::string& socketPath, std::string_view method,
                                     std::string_view target, Seconds timeout, std::size_t maxBytes);

} // namespace FellowCore
