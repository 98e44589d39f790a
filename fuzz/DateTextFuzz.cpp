#include "core/base/Json.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace FellowCore;

/// Whatever date is understood is written in a form that reads back as the same second, unless its offset
/// moves it out of the years that can be written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto at = instantFromIso8601({reinterpret_cast<const char*>(data), size});
    if (!at) {
        return 0;
    }
    const auto text = iso8601Text(*at);
    if (text.empty()) {
        return 0;
    }
    const auto again = instantFromIso8601(text);
    if (!again || again->toUnix() != std::floor(at->toUnix())) {
        std::abort();
    }
    return 0;
}
