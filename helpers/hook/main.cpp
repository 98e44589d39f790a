// fellow-hook: what agents run on their lifecycle events and as their status line. Small and static, because
// agents wait for it; silent and successful whatever happens, because it must never change what they do.

#include "helpers/hook/EventHook.h"
#include "helpers/hook/StatusLine.h"

#include <exception>
#include <string_view>

int main(int count, char** values) {
    const std::string_view command = count > 1 ? values[1] : "";
    try {
        if (command == "event") {
            FellowHook::recordEvent(count - 2, values + 2);
        } else if (command == "statusline") {
            return FellowHook::showStatusLine(count - 2, values + 2);
        }
    } catch (const std::exception&) {
        // Whoever called has no use for the news.
    }
    return 0;
}
