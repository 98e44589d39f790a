#include "core/devwatch/DevWatchSampler.h"

#include "core/devwatch/DevWatchProcessReading.h"

#include <algorithm>
#include <utility>

namespace FellowCore {

namespace {

// As bytes of the system's own list.
constexpr std::size_t longestPidList = 7'999'999 / sizeof(std::int32_t);

bool isBusier(const DevWatchProcessUsage& one, const DevWatchProcessUsage& other) {
    if (one.cpuPercent != other.cpuPercent) {
        return one.cpuPercent > other.cpuPercent;
    }
    const int names = one.process.name.compare(other.process.name);
    return names != 0 ? names < 0 : one.process.identity < other.process.identity;
}

bool comesFirst(const DevWatchListener& one, const DevWatchListener& other) {
    return one.port != other.port ? one.port < other.port : one.process.identity < other.process.identity;
}

} // namespace

DevWatchSampler::DevWatchSampler(const DevWatchOperations& system, DevWatchSafetyPolicy policy)
    : system_(system), policy_(std::move(policy)) {}

std::optional<DevWatchProcess> DevWatchSampler::process(std::int32_t pid) const {
    return DevWatchProcessReading::process(system_, pid, policy_.currentUserID);
}

std::set<std::uint16_t> DevWatchSampler::listeningPorts(std::int32_t pid) const {
    return DevWatchProcessReading::listeningPorts(system_, pid);
}

DevWatchSnapshot DevWatchSampler::sample() {
    DevWatchSnapshot snapshot;
    snapshot.sampledAt = system_.now();
    const auto pids = system_.pids(policy_.currentUserID);
    if (!pids || pids->size() > longestPidList) {
        return snapshot;
    }
    snapshot.enumerationSucceeded = true;
    ++round_;
    const std::vector<DevWatchSampledProcess> processes = readProcesses(*pids);
    measure(snapshot, processes);
    snapshot.listeners = listeners_.update(system_, processes);
    std::ranges::sort(snapshot.listeners, comesFirst);
    measureSystem(snapshot);
    return snapshot;
}

std::optional<DevWatchSampler::Seen> DevWatchSampler::look(std::int32_t pid) const {
    constexpr std::uint32_t turns = 32;
    // Before everything else, so that whatever it does meanwhile shows as time spent in the next sample.
    const auto spent = system_.cpuTimeNanoseconds(pid);
    const auto known = seen_.find(pid);
    const Seen* const before = known == seen_.end() ? nullptr : &known->second;
    const bool stoodStill = before && spent && *spent != 0 && before->sampled.cpuTimeNanoseconds == spent;
    if (stoodStill && (static_cast<std::uint32_t>(pid) + round_) % turns != 0) {
        Seen same = *before;
        same.sampled.mayHaveRun = false;
        return same;
    }
    const auto record = DevWatchProcessReading::liveRecord(system_, pid, policy_.currentUserID);
    auto process = record ? DevWatchProcessReading::withPaths(system_, *record) : std::nullopt;
    if (!process) {
        return std::nullopt;
    }
    // Following links is dear, so a process that has not changed is judged once.
    const bool listed = before && before->sampled.process == *process
                            ? before->listed
                            : policy_.refusal(*process) != DevWatchSafetyRefusal::selfProcess;
    return Seen{{std::move(*process), spent, !stoodStill}, listed};
}

std::vector<DevWatchSampledProcess> DevWatchSampler::readProcesses(const std::vector<std::int32_t>& pids) {
    std::unordered_map<std::int32_t, Seen> seen;
    std::vector<DevWatchSampledProcess> processes;
    processes.reserve(pids.size());
    for (const std::int32_t pid : pids) {
        if (pid < devWatchLowestPid || seen.contains(pid)) {
            continue;
        }
        if (auto found = look(pid)) {
            if (found->listed) {
                processes.push_back(found->sampled);
            }
            seen.emplace(pid, std::move(*found));
        }
    }
    seen_ = std::move(seen);
    return processes;
}

void DevWatchSampler::measure(DevWatchSnapshot& snapshot,
                              const std::vector<DevWatchSampledProcess>& processes) {
    std::unordered_map<DevWatchProcessIdentity, DevWatchCPUSample> samples;
    for (const auto& [process, spent, mayHaveRun] : processes) {
        if (!spent) {
            continue;
        }
        const DevWatchCPUSample sample{process.identity, *spent, snapshot.sampledAt};
        samples.emplace(process.identity, sample);
        const auto previous = previousCPU_.find(process.identity);
        const auto percent = previous == previousCPU_.end()
                                 ? std::nullopt
                                 : DevWatchCPUCalculator::percent(previous->second, sample);
        if (percent) {
            snapshot.usages.push_back({process, *percent});
        }
    }
    previousCPU_ = std::move(samples);
    std::ranges::sort(snapshot.usages, isBusier);
}

void DevWatchSampler::measureSystem(DevWatchSnapshot& snapshot) {
    const auto ticks = system_.systemTicks();
    if (ticks && previousSystem_) {
        snapshot.systemCPUPercent = DevWatchCPUCalculator::systemPercent(*previousSystem_, *ticks);
    }
    previousSystem_ = ticks;
}

} // namespace FellowCore
