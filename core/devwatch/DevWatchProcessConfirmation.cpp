#include "core/devwatch/DevWatchProcessConfirmation.h"

#include "core/base/Text.h"

namespace FellowCore {

DevWatchProcessConfirmation::DevWatchProcessConfirmation(const DevWatchListener& listener)
    : process(listener.process), port(listener.port) {}

std::string DevWatchProcessConfirmation::displayDetails() const {
    return "PID " + std::to_string(process.identity.pid) + " · port " + std::to_string(port) + " · " +
           singleLine(process.workingDirectory);
}

bool DevWatchProcessConfirmation::matchesFresh(const std::optional<DevWatchProcess>& fresh,
                                               const std::set<std::uint16_t>& listeningPorts) const {
    return fresh && matchesProcess(*fresh) && listeningPorts.contains(port);
}

} // namespace FellowCore
