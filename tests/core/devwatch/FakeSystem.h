#pragma once

#include "core/devwatch/DevWatchOperations.h"
#include "core/devwatch/DevWatchProcess.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

constexpr std::uint32_t me = 1000;
constexpr std::int32_t self = 4000;

/// A process as a script of a test describes it.
struct FakeProcess {
    std::uint64_t started = 5'000'000;
    std::uint32_t uid = me;
    std::uint32_t realUid = me;
    bool zombie = false;
    std::string name = "node";
    std::string path = "/usr/bin/node";
    std::string folder = "/home/asha/site";
    std::uint64_t cpu = 1; ///< nanoseconds
    std::int32_t parent = 1;
    std::vector<FellowCore::DevWatchSocketDescriptor> sockets = {};
};

/// An operating system made of two maps. It counts the looks into descriptors, the dear ones.
class FakeSystem final : public FellowCore::DevWatchOperations {
public:
    std::map<std::int32_t, FakeProcess> processes;
    std::map<std::uint64_t, std::uint16_t> listening; ///< port by socket
    FellowCore::MonotonicInstant time{100};
    FellowCore::DevWatchSystemCPUSample ticks;
    bool canList = true;
    bool canListSockets = true;
    mutable int looks = 0;
    std::function<void()> beforeEachLook = [] {}; ///< may change the system

    FellowCore::MonotonicInstant now() const override { return time; }
    std::optional<std::vector<std::int32_t>> pids(std::uint32_t uid) const override {
        std::vector<std::int32_t> found;
        for (const auto& [pid, process] : processes) {
            if (process.uid == uid) {
                found.push_back(pid);
            }
        }
        return canList ? std::optional(found) : std::nullopt;
    }
    std::optional<FellowCore::DevWatchProcessRecord> record(std::int32_t pid) const override {
        const FakeProcess* const process = find(pid);
        if (process == nullptr) {
            return std::nullopt;
        }
        return FellowCore::DevWatchProcessRecord{pid,
                                                 process->parent,
                                                 process->uid,
                                                 process->zombie,
                                                 "",
                                                 process->name,
                                                 process->started / 1'000'000,
                                                 process->started % 1'000'000};
    }
    std::optional<FellowCore::DevWatchProcessOwners> owners(std::int32_t pid) const override {
        const FakeProcess* const process = find(pid);
        return process == nullptr
                   ? std::nullopt
                   : std::optional(FellowCore::DevWatchProcessOwners{process->realUid, process->uid});
    }
    std::optional<std::string> executablePath(std::int32_t pid) const override {
        const FakeProcess* const process = find(pid);
        return process == nullptr || process->path.empty() ? std::nullopt : std::optional(process->path);
    }
    std::optional<std::string> workingDirectory(std::int32_t pid) const override {
        const FakeProcess* const process = find(pid);
        return process == nullptr || process->folder.empty() ? std::nullopt : std::optional(process->folder);
    }
    std::optional<std::uint64_t> cpuTimeNanoseconds(std::int32_t pid) const override {
        const FakeProcess* const process = find(pid);
        return process == nullptr ? std::nullopt : std::optional(process->cpu);
    }
    std::optional<std::vector<FellowCore::DevWatchListeningSocket>> listeningSockets() const override {
        std::vector<FellowCore::DevWatchListeningSocket> sockets;
        for (const auto& [socket, port] : listening) {
            sockets.push_back({socket, port});
        }
        return canListSockets ? std::optional(sockets) : std::nullopt;
    }
    std::vector<FellowCore::DevWatchSocketDescriptor> socketDescriptors(std::int32_t pid) const override {
        ++looks;
        const FakeProcess* const process = find(pid);
        return process == nullptr ? std::vector<FellowCore::DevWatchSocketDescriptor>() : process->sockets;
    }
    std::uint64_t socketBehind(std::int32_t pid, std::int32_t descriptor) const override {
        const FakeProcess* const process = find(pid);
        if (process == nullptr) {
            return 0;
        }
        for (const auto& entry : process->sockets) {
            if (entry.descriptor == descriptor) {
                return entry.socket;
            }
        }
        return 0;
    }
    std::optional<FellowCore::DevWatchSystemCPUSample> systemTicks() const override { return ticks; }

private:
    const FakeProcess* find(std::int32_t pid) const {
        beforeEachLook();
        const auto found = processes.find(pid);
        return found == processes.end() ? nullptr : &found->second;
    }
};

/// Ours, with links that lead nowhere else.
inline FellowCore::DevWatchSafetyPolicy plainPolicy() {
    FellowCore::DevWatchSafetyPolicy policy;
    policy.currentUserID = me;
    policy.selfPID = self;
    policy.resolveLinks = [](const std::string& path) { return std::optional(path); };
    return policy;
}

inline FellowCore::DevWatchProcess server(std::int32_t pid = 4242) {
    return {{pid, me, 5'000'000}, "node", "/usr/bin/node", "/home/asha/site"};
}

} // namespace TestSupport
