#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// Whatever document is accepted is written in a form that reads back as the same settings, and a refused one
/// changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FellowCore::MemoryPreferences preferences;
    preferences.setString("kept", "yes");
    try {
        preferences.load({reinterpret_cast<const char*>(data), size});
    } catch (const FellowCore::JsonError&) {
        if (preferences.string("kept") != "yes") {
            std::abort();
        }
        return 0;
    }
    const std::string written = preferences.document();
    FellowCore::MemoryPreferences again;
    again.load(written);
    if (again.document() != written) {
        std::abort();
    }
    return 0;
}
