#pragma once

#include <algorithm>
#include <string_view>

namespace FellowCore {

/// Whether a text is a container's full id: 64 hexadecimal digits, which is also what makes it safe in the
/// target of a request.
inline bool isDockerID(std::string_view text) {
    return text.size() == 64 && std::ranges::all_of(text, [](char byte) {
               return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'f') ||
                      (byte >= 'A' && byte <= 'F');
           });
}

} // namespace FellowCore
