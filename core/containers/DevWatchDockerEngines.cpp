#include "core/containers/DevWatchDockerEngines.h"

#include "core/containers/DevWatchDockerFailure.h"
#include "core/containers/DevWatchDockerSocketPolicy.h"

#include <algorithm>
#include <set>

namespace FellowCore {

DevWatchDockerEngines::DevWatchDockerEngines(const std::string& home,
                                             const std::optional<std::string>& runtime) {
    for (const std::string& socket : DevWatchDockerSocketPolicy::sockets(home, runtime)) {
        clients.emplace_back(socket, home, runtime);
    }
}

bool DevWatchDockerEngines::available() const {
    return std::ranges::any_of(clients, &DevWatchDockerClient::available);
}

std::vector<DevWatchDockerEngines::Entry> DevWatchDockerEngines::containers() const {
    std::vector<Entry> entries;
    std::set<std::string> ids;
    std::optional<DevWatchDockerFailure> failure;
    bool answered = false;
    for (const DevWatchDockerClient& client : clients) {
        if (!client.available()) {
            continue;
        }
        try {
            for (auto& container : client.containers()) {
                if (ids.insert(container.id).second) {
                    entries.push_back({client, std::move(container)});
                }
            }
            answered = true;
        } catch (const DevWatchDockerFailure& error) {
            // An engine that was ended leaves its socket's file behind; that must not hide the others.
            failure = failure ? failure : error;
        }
    }
    if (!answered) {
        throw failure ? *failure
                      : DevWatchDockerFailure(DevWatchDockerFailure::Kind::unavailable,
                                              "The user has no container engine.");
    }
    std::ranges::sort(entries, {}, [](const Entry& entry) { return entry.container.order(); });
    return entries;
}

} // namespace FellowCore
