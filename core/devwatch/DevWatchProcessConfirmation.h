#pragma once

#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace FellowCore {

/// What the user saw when confirming a stop, kept to be held against what is there at the signal.
struct DevWatchProcessConfirmation {
    explicit DevWatchProcessConfirmation(const DevWatchListener& listener);

    const DevWatchProcess process;
    const std::uint16_t port;

    const std::string& name() const { return process.name; }
    const std::string& workingDirectory() const { return process.workingDirectory; }
    /// Number, port and folder in one clean line: "PID 4242 · port 5173 · /home/asha/site".
    std::string displayDetails() const;

    /// Whether this is the process that was confirmed, in every particular.
    bool matchesProcess(const DevWatchProcess& fresh) const { return fresh == process; }
    /// The same, and it still listens on the port that was confirmed.
    bool matchesFresh(const std::optional<DevWatchProcess>& fresh,
                      const std::set<std::uint16_t>& listeningPorts) const;
};

} // namespace FellowCore
