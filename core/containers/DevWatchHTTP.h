#pragma once

#include "core/containers/DevWatchHTTPResponse.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The part of HTTP/1.1 (RFC 9112) that one answer on a connection of its own needs. Strict: whatever could
/// be read in two ways is refused.
namespace FellowCore::DevWatchHTTP {

/// The most bytes before the blank line that ends a head, in a chunk's size line, and in a trailer.
constexpr std::size_t headLimit = 16384;

/// Reads all that a server sent until it closed. The body is as long as a "content-length" says (what follows
/// is dropped), dechunked where "transfer-encoding" is "chunked", and else all that remains. Throws
/// `DevWatchHTTPFailure`: malformed, or tooLarge for a body of more than `maxBytes`.
DevWatchHTTPResponse parse(std::string_view bytes, std::size_t maxBytes);

/// The contents of a chunked body. Extensions and trailers are skipped, and so is what follows the body.
/// Throws as `parse` does; a chunk that claims more than `maxBytes` leave is tooLarge whether or not it came.
std::string dechunked(std::string_view bytes, std::size_t maxBytes);

} // namespace FellowCore::DevWatchHTTP
