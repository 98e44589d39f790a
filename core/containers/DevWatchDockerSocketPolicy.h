#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

/// Which sockets are ever talked to: the ones that a container engine makes for this user alone. A
/// system-wide socket, a link, or a socket of someone else never is, whoever the user is.
namespace FellowCore::DevWatchDockerSocketPolicy {

/// Below the user's home; the default, and the one that is asked first.
constexpr std::string_view homeSocket = "/.docker/run/docker.sock";
/// Below the user's home, where the desktop edition for Linux puts it.
constexpr std::string_view desktopSocket = "/.docker/desktop/docker.sock";
/// Below the folder of the user's session, where an engine without root's rights puts it.
constexpr std::string_view runtimeSocket = "/docker.sock";

/// What stands at a path, and who asks.
struct Candidate {
    std::string path;
    uid_t ownerUserID;
    bool isSocket;
    bool isSymbolicLink;
    uid_t currentUserID;
    std::string homeDirectory;
    std::optional<std::string> runtimeDirectory; ///< $XDG_RUNTIME_DIR, where the session has one
};

/// True only for a socket, itself no link, of the current user, at one of the places above; links in the
/// folders on the way are resolved on both sides. A home or session folder that is not absolute, or any NUL
/// character, makes it false.
bool allows(const Candidate& candidate);

/// The paths that can be allowed for a user, in the order in which they are asked.
std::vector<std::string> sockets(const std::string& homeDirectory,
                                 const std::optional<std::string>& runtimeDirectory);

} // namespace FellowCore::DevWatchDockerSocketPolicy
