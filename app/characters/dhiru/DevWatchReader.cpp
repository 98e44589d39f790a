#include "app/characters/dhiru/DevWatchReader.h"

#include "core/devwatch/DevWatchProcessReading.h"
#include "platform/Processes.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace DeskSprites {

using FellowCore::DevWatchApp;
using FellowCore::DevWatchKind;
using FellowCore::DevWatchSafetyRefusal;

namespace {

using Percents = std::unordered_map<FellowCore::DevWatchProcessIdentity, double>;

Percents percentsOf(const FellowCore::DevWatchSnapshot& snapshot) {
    Percents percents;
    for (const auto& usage : snapshot.usages) {
        percents[usage.process.identity] = usage.cpuPercent;
    }
    return percents;
}

std::optional<double> percentOf(const Percents& percents, const FellowCore::DevWatchProcessIdentity& who) {
    const auto found = percents.find(who);
    return found == percents.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

DevWatchReader::DevWatchReader(const FellowCore::DevWatchOperations& system,
                               std::function<FellowCore::MonotonicInstant()> gateClock)
    : system_(system), policy_(Platform::ownSafetyPolicy(system)), sampler_(std::in_place, system, policy_),
      terminator_(system, policy_, Platform::openProcess, std::move(gateClock)),
      applications_(system, policy_.currentUserID, policy_.selfPID) {}

DevWatchReading DevWatchReader::read(const std::optional<Windows>& windows) {
    DevWatchReading reading;
    reading.snapshot = sampler_->sample();
    const Percents percents = percentsOf(reading.snapshot);
    Judgements round;
    for (const auto& listener : reading.snapshot.listeners) {
        const Judged& judged = judge(round, listener.process);
        reading.servers.push_back({.listener = listener,
                                   .kind = judged.kind,
                                   .cpuPercent = percentOf(percents, listener.process.identity),
                                   .url = DevWatchKind::httpURL(listener),
                                   .refusal = judged.refusal,
                                   .note = {}});
    }
    for (const auto& usage : reading.snapshot.usages) {
        const Judged& judged = judge(round, usage.process);
        reading.processes.push_back({.process = usage.process,
                                     .kind = judged.kind,
                                     .cpuPercent = usage.cpuPercent,
                                     .refusal = judged.refusal});
    }
    judged_ = std::move(round);
    if (windows) {
        reading.applications = applicationRows(*windows, reading.snapshot);
    }
    return reading;
}

void DevWatchReader::startAfresh() {
    sampler_.emplace(system_, policy_);
    judged_.clear();
}

const DevWatchReader::Judged& DevWatchReader::judge(Judgements& round,
                                                    const FellowCore::DevWatchProcess& process) const {
    const auto known = judged_.find(process.identity);
    if (known != judged_.end() && known->second.process == process) {
        return round.try_emplace(process.identity, known->second).first->second;
    }
    if (const auto done = round.find(process.identity); done != round.end()) {
        return done->second;
    }
    return round
        .try_emplace(process.identity,
                     Judged{process, DevWatchKind::classify(process), policy_.refusal(process)})
        .first->second;
}

std::optional<DevWatchSafetyRefusal> DevWatchReader::refusal(const DevWatchApp& app) const {
    const auto process =
        FellowCore::DevWatchProcessReading::process(system_, app.identity.pid, policy_.currentUserID);
    const bool isKnown = process && process->identity == app.identity;
    return isKnown ? policy_.refusal(*process) : DevWatchSafetyRefusal::incompleteIdentity;
}

std::vector<DevWatchAppRow> DevWatchReader::applicationRows(const Windows& windows,
                                                            const FellowCore::DevWatchSnapshot& snapshot) {
    const Percents percents = percentsOf(snapshot);
    std::vector<DevWatchAppRow> rows;
    for (const DevWatchApp& app : applications_.list(windows)) {
        rows.push_back({.app = app,
                        .cpuPercent = percentOf(percents, app.identity),
                        .refusal = refusal(app),
                        .note = {}});
    }
    return rows;
}

std::optional<DevWatchApp> DevWatchReader::fresh(const DevWatchApp& app, const Windows& windows) {
    const auto running = applications_.list(windows);
    const auto found = std::ranges::find(running, app.identity, &DevWatchApp::identity);
    return found == running.end() ? std::nullopt : std::optional(*found);
}

DevWatchReader::Windows DevWatchReader::closableWindows(const DevWatchApp& app,
                                                        const Windows& windows) const {
    return refusal(app) ? Windows{} : applications_.windowsOf(app, windows);
}

} // namespace DeskSprites
