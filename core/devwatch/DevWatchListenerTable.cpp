#include "core/devwatch/DevWatchListenerTable.h"

#include <algorithm>
#include <set>
#include <utility>

namespace FellowCore {

/// One update: the machine's listening sockets, and which of them have found their process.
struct DevWatchListenerTable::Round {
    const DevWatchOperations& system;
    std::unordered_map<std::uint64_t, std::uint16_t> ports = {};
    std::unordered_set<std::uint64_t> unclaimed = {};
    std::unordered_map<DevWatchProcessIdentity, Entry> held = {};

    Round(const DevWatchOperations& source, const std::vector<DevWatchListeningSocket>& sockets)
        : system(source) {
        for (const DevWatchListeningSocket& socket : sockets) {
            if (socket.port != 0 && socket.socket != 0) {
                ports.emplace(socket.socket, socket.port);
                unclaimed.insert(socket.socket);
            }
        }
    }

    Entry lookThrough(const DevWatchProcess& process) const {
        return {system.socketDescriptors(process.identity.pid)};
    }

    /// Whether a descriptor that is remembered as a listening socket is something else by now.
    bool isOutdated(const DevWatchProcess& process, const DevWatchSocketDescriptor& known) const {
        return ports.contains(known.socket) &&
               system.socketBehind(process.identity.pid, known.descriptor) != known.socket;
    }

    void claim(const DevWatchProcess& process, Entry entry) {
        for (const DevWatchSocketDescriptor& descriptor : entry.sockets) {
            unclaimed.erase(descriptor.socket);
        }
        held.insert_or_assign(process.identity, std::move(entry));
    }
};

DevWatchListenerTable::Entry DevWatchListenerTable::known(const Round& round,
                                                          const DevWatchSampledProcess& sampled) const {
    constexpr std::uint32_t turns = 32;
    const DevWatchProcess& process = sampled.process;
    const auto found = held_.find(process.identity);
    if (found == held_.end()) {
        return round.lookThrough(process);
    }
    Entry entry = found->second;
    entry.hasRunSince = entry.hasRunSince || sampled.mayHaveRun;
    if (!entry.hasRunSince) {
        return entry;
    }
    const bool isItsTurn = (static_cast<std::uint32_t>(process.identity.pid) + round_) % turns == 0;
    const bool isOutdated = std::ranges::any_of(
        entry.sockets, [&](const auto& descriptor) { return round.isOutdated(process, descriptor); });
    return isItsTurn || isOutdated ? round.lookThrough(process) : entry;
}

std::vector<DevWatchListener>
DevWatchListenerTable::update(const DevWatchOperations& system,
                              const std::vector<DevWatchSampledProcess>& processes) {
    const auto sockets = system.listeningSockets();
    if (!sockets) {
        // Who ran in this round is not looked at, so anyone may have.
        for (auto& [identity, entry] : held_) {
            entry.hasRunSince = true;
        }
        return {};
    }
    ++round_;
    Round round(system, *sockets);
    for (const DevWatchSampledProcess& sampled : processes) {
        round.claim(sampled.process, known(round, sampled));
    }
    const bool looksAgain = isNews(round);
    for (const DevWatchSampledProcess& sampled : processes) {
        if (looksAgain && round.held.at(sampled.process.identity).hasRunSince) {
            round.claim(sampled.process, round.lookThrough(sampled.process));
        }
    }
    held_ = std::move(round.held);
    strangers_ = std::move(round.unclaimed);
    ports_ = std::move(round.ports);
    return listeners(processes);
}

/// A socket that is new may have more than one holder: a server that forks hands it to its children, and only
/// those are new themselves.
bool DevWatchListenerTable::isNews(const Round& round) const {
    return std::ranges::any_of(round.ports, [&](const auto& socket) {
        return !ports_.contains(socket.first) ||
               (round.unclaimed.contains(socket.first) && !strangers_.contains(socket.first));
    });
}

std::vector<DevWatchListener>
DevWatchListenerTable::listeners(const std::vector<DevWatchSampledProcess>& processes) const {
    std::vector<DevWatchListener> listeners;
    for (const auto& [process, spent, mayHaveRun] : processes) {
        std::set<std::uint16_t> ports;
        for (const DevWatchSocketDescriptor& descriptor : held_.at(process.identity).sockets) {
            if (const auto found = ports_.find(descriptor.socket); found != ports_.end()) {
                ports.insert(found->second);
            }
        }
        for (const std::uint16_t port : ports) {
            listeners.push_back({process, port});
        }
    }
    return listeners;
}

} // namespace FellowCore
