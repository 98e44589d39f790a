#include "core/base/DesktopEntry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto command = FellowCore::desktopEntryCommand(text, {"/home/a folder", "/b"});
    if (command && (command->empty() || command->front().empty())) {
        std::abort(); // nothing to start
    }
    return 0;
}
