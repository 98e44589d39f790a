#include "core/sound/WaveFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// Whatever the bytes are, they are a sound no longer than themselves or a `WaveFileError`.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        if (FellowCore::WaveFile::parse(bytes).samples.size() * 2 > size)
            std::abort();
    } catch (const FellowCore::WaveFileError&) {
        // Refused, which is an answer.
    }
    return 0;
}
