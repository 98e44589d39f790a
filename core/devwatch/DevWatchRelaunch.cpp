#include "core/devwatch/DevWatchRelaunch.h"

#include <algorithm>

namespace FellowCore {

namespace {

bool isBack(const DevWatchRelaunch::Stopped& entry, const DevWatchListener& listener) {
    const DevWatchProcess& process = listener.process;
    return process.name == entry.name && process.executablePath == entry.executablePath &&
           listener.port == entry.port && process.identity.pid != entry.pid;
}

} // namespace

void DevWatchRelaunch::forget(MonotonicInstant at) {
    // Asked this way round, so that a time that is no number forgets.
    std::erase_if(stopped, [at](const Stopped& entry) { return !(at - entry.at <= memory); });
}

void DevWatchRelaunch::recordStop(const DevWatchListener& listener, MonotonicInstant at) {
    forget(at);
    const DevWatchProcess& process = listener.process;
    stopped.push_back({process.name, process.executablePath, listener.port, process.identity.pid, at});
}

std::optional<DevWatchRelaunch::Stopped>
DevWatchRelaunch::relaunched(const std::vector<DevWatchListener>& listeners, MonotonicInstant at) {
    forget(at);
    const auto found = std::ranges::find_if(stopped, [&listeners](const Stopped& entry) {
        return std::ranges::any_of(listeners,
                                   [&entry](const auto& listener) { return isBack(entry, listener); });
    });
    if (found == stopped.end()) {
        return std::nullopt;
    }
    const Stopped back = *found;
    stopped.erase(found);
    return back;
}

} // namespace FellowCore
