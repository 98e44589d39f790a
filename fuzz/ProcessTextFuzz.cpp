#include "fuzz/Require.h"
#include "platform/linux/process/ProcText.h"
#include "platform/linux/process/SocketDiagnostics.h"

#include <cstdint>
#include <span>
#include <string_view>

using namespace Platform;

/// Whatever the kernel's texts and messages hold, they are read within their bounds and make sense or
/// nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto stat = ProcText::stat(text)) {
        require(text.find("(" + stat->command + ")") != std::string_view::npos);
    }
    ProcText::owners(text);
    ProcText::systemTicks(text);
    ProcText::socket(text);
    SocketDiagnostics::Dump dump;
    if (!SocketDiagnostics::read(std::as_bytes(std::span(data, size)), dump)) {
        require(!dump.complete);
    }
    for (const auto& socket : dump.sockets) {
        require(socket.port != 0 && socket.socket != 0);
    }
    return 0;
}
