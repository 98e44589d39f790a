#include "core/devwatch/DevWatchProcessReading.h"

#include <unordered_map>

namespace FellowCore::DevWatchProcessReading {

std::optional<DevWatchProcessRecord> liveRecord(const DevWatchOperations& system, std::int32_t pid,
                                                std::uint32_t uid) {
    if (pid < devWatchLowestPid) {
        return std::nullopt;
    }
    auto record = system.record(pid);
    if (!record || record->pid != pid || record->uid != uid || record->zombie) {
        return std::nullopt;
    }
    return record;
}

bool actsOnlyFor(const DevWatchOperations& system, std::int32_t pid, std::uint32_t uid) {
    const auto owners = system.owners(pid);
    return owners && owners->real == uid && owners->effective == uid;
}

DevWatchProcessIdentity identity(const DevWatchProcessRecord& record) {
    constexpr std::uint64_t microsecondsPerSecond = 1'000'000;
    return {record.pid, record.uid, record.startSeconds * microsecondsPerSecond + record.startMicroseconds};
}

std::optional<DevWatchProcess> withPaths(const DevWatchOperations& system,
                                         const DevWatchProcessRecord& record) {
    auto executable = system.executablePath(record.pid);
    auto folder = executable ? system.workingDirectory(record.pid) : std::nullopt;
    if (!folder) {
        return std::nullopt;
    }
    return DevWatchProcess{identity(record), record.name.empty() ? record.command : record.name,
                           std::move(*executable), std::move(*folder)};
}

std::optional<DevWatchProcess> process(const DevWatchOperations& system, std::int32_t pid,
                                       std::uint32_t uid) {
    const auto record = liveRecord(system, pid, uid);
    return record && actsOnlyFor(system, pid, uid) ? withPaths(system, *record) : std::nullopt;
}

std::set<std::uint16_t> listeningPorts(const DevWatchOperations& system, std::int32_t pid) {
    const auto listening = pid < devWatchLowestPid ? std::nullopt : system.listeningSockets();
    if (!listening) {
        return {};
    }
    std::unordered_map<std::uint64_t, std::uint16_t> ports;
    for (const DevWatchListeningSocket& socket : *listening) {
        ports.emplace(socket.socket, socket.port);
    }
    std::set<std::uint16_t> held;
    for (const DevWatchSocketDescriptor& descriptor : system.socketDescriptors(pid)) {
        if (const auto found = ports.find(descriptor.socket); found != ports.end() && found->second != 0) {
            held.insert(found->second);
        }
    }
    return held;
}

std::vector<DevWatchProcessIdentity> ancestors(const DevWatchOperations& system, std::int32_t pid) {
    constexpr std::size_t deepest = 100; // a table that changes while it is read may seem to go in a circle
    std::vector<DevWatchProcessIdentity> line;
    auto record = system.record(pid);
    while (record && record->parent > 0 && line.size() < deepest) {
        record = system.record(record->parent);
        if (record) {
            line.push_back(identity(*record));
        }
    }
    return line;
}

} // namespace FellowCore::DevWatchProcessReading
