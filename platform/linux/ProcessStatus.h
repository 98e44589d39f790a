#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// What /proc/PID/stat tells of a process.
struct ProcessStatus {
    std::string name; ///< cut to 15 bytes by the kernel
    long parent = 0;
    long session = 0; ///< the process that leads its session
    int terminal = 0; ///< its terminal's device, as the kernel encodes it; 0 for none
};

/// Nothing when there is no such process.
std::optional<ProcessStatus> processStatus(long pid);
/// The numbers of all processes that may be seen.
std::vector<long> allProcesses();
/// A variable of the environment with which a process of the same user was started; empty when it had none.
std::string startVariable(long pid, const std::string& name);
/// Whether `terminal` of a process is the device with this path.
bool isTerminal(int terminal, const std::string& device);

} // namespace Platform
