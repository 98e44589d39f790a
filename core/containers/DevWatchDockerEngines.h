#pragma once

#include "core/containers/DevWatchDockerClient.h"

#include <optional>
#include <string>
#include <vector>

namespace FellowCore {

/// All the container engines that a user may have at once, each on a socket of its own.
struct DevWatchDockerEngines {
    /// A running container, and whom to ask to stop it.
    struct Entry {
        DevWatchDockerClient engine;
        DevWatchDockerContainer container;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    std::vector<DevWatchDockerClient> clients; ///< one for every place, whether or not anything stands there

    /// `runtime` is $XDG_RUNTIME_DIR, where the session has one.
    DevWatchDockerEngines(const std::string& home, const std::optional<std::string>& runtime);

    /// Whether any of them may be asked.
    bool available() const;

    /// What all of them run, by name and then by id; a container that two sockets show comes from the first.
    /// Blocks for at most two seconds for each engine. Throws `DevWatchDockerFailure` when none of them gives
    /// a list: the first one's failure, or unavailable when there is none to ask.
    std::vector<Entry> containers() const;
};

} // namespace FellowCore
