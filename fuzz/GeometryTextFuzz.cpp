#include "core/base/Geometry.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace FellowCore;

/// Whatever is understood is finite and is written in a form that reads back as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto rect = rectFromText(text);
    if (rect && (!rect->isFinite() || rectFromText(rectText(*rect)) != rect)) {
        std::abort();
    }
    const auto point = pointFromText(text);
    if (point && (!point->isFinite() || pointFromText(pointText(*point)) != point)) {
        std::abort();
    }
    return 0;
}
