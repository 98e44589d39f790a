#include "core/base/DesktopEntry.h"

#include "core/base/Text.h"

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
    // The first line as the locale as well, so that both are looked at together.
    for (const std::string_view locale :
         {text.substr(0, text.find('\n')), std::string_view("de_AT.UTF-8@euro")}) {
        const auto name = FellowCore::desktopEntryName(text, locale);
        if (name && (name->empty() || FellowCore::singleLine(*name) != *name)) {
            std::abort(); // nothing to show, or more than a line
        }
    }
    const auto windowClass = FellowCore::desktopEntryWindowClass(text);
    if (windowClass && windowClass->empty()) {
        std::abort(); // would be that of every window that tells none
    }
    return 0;
}
