#include "core/agents/PumpAgentTail.h"

#include <algorithm>
#include <span>
#include <string>
#include <system_error>

namespace FellowCore {

namespace {

/// The file may be replaced or grow meanwhile; what is read is what it held at the start, or less.
std::string readAt(FileOperations& files, int file, std::uintmax_t offset, std::uintmax_t length) {
    std::string bytes(static_cast<std::size_t>(length), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const auto rest = std::as_writable_bytes(std::span(bytes).subspan(filled));
        const std::size_t taken = files.readAt(file, offset + filled, rest);
        if (taken == 0) {
            break;
        }
        filled += taken;
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace

std::vector<PumpAgentEvent> readAgentEvents(FileOperations& files, const std::filesystem::path& file) {
    int opened = -1;
    std::vector<PumpAgentEvent> events;
    try {
        opened = files.openForReading(file);
        const std::uintmax_t size = files.size(opened);
        const std::uintmax_t length = std::min(size, agentTailBytes);
        events = agentEventsInTail(readAt(files, opened, size - length, length), length == size);
    } catch (const std::system_error&) {
        // Without the file there are no sessions, which is what an empty list says.
    }
    if (opened >= 0) {
        files.close(opened);
    }
    return events;
}

} // namespace FellowCore
