#include "core/containers/DevWatchDockerSocketPolicy.h"

#include "core/base/WholeFile.h"

#include <algorithm>

namespace FellowCore::DevWatchDockerSocketPolicy {

namespace {

/// A session folder may be set to anything, also to where the whole machine's sockets are.
constexpr const char* systemSockets[] = {"/run/docker.sock", "/var/run/docker.sock"};

bool isUsable(std::string_view path) {
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

} // namespace

std::vector<std::string> sockets(const std::string& homeDirectory,
                                 const std::optional<std::string>& runtimeDirectory) {
    std::vector<std::string> paths = {homeDirectory + std::string(homeSocket)};
    if (runtimeDirectory && isUsable(*runtimeDirectory)) {
        paths.push_back(*runtimeDirectory + std::string(runtimeSocket));
    }
    paths.push_back(homeDirectory + std::string(desktopSocket));
    return paths;
}

bool allows(const Candidate& candidate) {
    if (!isUsable(candidate.homeDirectory) || !isUsable(candidate.path) || !candidate.isSocket ||
        candidate.isSymbolicLink || candidate.ownerUserID != candidate.currentUserID) {
        return false;
    }
    const auto resolved = standardized(candidate.path);
    const auto isResolved = [&](const std::string& path) { return standardized(path) == resolved; };
    return std::ranges::any_of(sockets(candidate.homeDirectory, candidate.runtimeDirectory), isResolved) &&
           std::ranges::none_of(systemSockets, isResolved);
}

} // namespace FellowCore::DevWatchDockerSocketPolicy
