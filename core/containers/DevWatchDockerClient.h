#pragma once

#include "core/containers/DevWatchDockerContainer.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Lists and politely stops the running containers of one engine, over the user's own socket and nothing
/// else (Docker Engine API, https://docs.docker.com/reference/api/engine/). A value without state: each
/// request has a connection of its own and at most two seconds. What talks to the engine blocks, and belongs
/// on a background queue.
struct DevWatchDockerClient {
    static constexpr std::size_t listByteLimit = 1048576;
    static constexpr std::size_t listLimit = 2000;

    std::string socketPath;
    std::string homeDirectory;
    std::optional<std::string> runtimeDirectory; ///< $XDG_RUNTIME_DIR, where the session has one

    /// On the socket below the home that is asked first.
    explicit DevWatchDockerClient(const std::string& home);
    /// On a socket that is used only if `DevWatchDockerSocketPolicy` allows it for this user.
    DevWatchDockerClient(std::string socket, std::string home, std::optional<std::string> runtime = {});

    /// Whether the user has a socket there that may be talked to; nobody need answer on it.
    bool available() const;

    /// The running containers, by name and then by id. Throws `DevWatchDockerFailure`: unavailable (also for
    /// every failure of the exchange itself), status, invalidResponse.
    std::vector<DevWatchDockerContainer> containers() const;

    /// The list in an answer's body. An entry that is not running, or whose id is not one, is left out, and
    /// so is a second one of the same id. Throws `DevWatchDockerFailure` (invalidResponse) for more than
    /// `listByteLimit` bytes or `listLimit` entries, and when any entry is not built as the engine's are.
    static std::vector<DevWatchDockerContainer> decodeContainers(std::string_view body);

    /// Asks the engine to send SIGTERM to a container and to wait for it as long as it takes; never kills.
    /// `stillAuthorized` is called on this thread, right before the request, if the engine still lists the
    /// container exactly as it was confirmed; unless it answers true nothing is sent. Returns once the engine
    /// says that the container has stopped. Throws `DevWatchDockerFailure` when nothing was sent
    /// (changedContainer, unavailable, unsupportedAPI, invalidResponse, status) or when the engine refused
    /// (status), and `DevWatchHTTPFailure` when the request may have arrived but no answer came: usually a
    /// timeout, because the container takes its time. The next list tells.
    void stop(const DevWatchDockerContainer& confirmed, const std::function<bool()>& stillAuthorized) const;

    /// Whether that version of the API, "MAJOR.MINOR", can stop a container by a named signal: from 1.42 on.
    static bool supportsTermStop(std::string_view version);

    friend bool operator==(const DevWatchDockerClient&, const DevWatchDockerClient&) = default;
};

} // namespace FellowCore
