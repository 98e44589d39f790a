#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace FellowHook {

/// What /proc/PID/stat tells of a process.
struct Process {
    std::string name; ///< cut to 15 bytes by the kernel
    char state = 0;   ///< 'Z' when it has ended and nobody has asked how
    pid_t parent = 0;
    int terminal = 0; ///< device number; 0 for none
    double age = 0;   ///< seconds since it was started
};

std::optional<Process> processWith(pid_t pid);

/// Where an agent runs, as its ancestors tell.
struct AgentPlace {
    std::optional<std::string> application; ///< a desktop-file id
    std::optional<std::string> terminal;    ///< "/dev/pts/3"
};

/// Walks up to 16 processes from `first`, stopping at process 1. The application is the nearest one known by
/// its process name or by the desktop's word that it started it; otherwise the one in whose control group
/// this process is; otherwise the one that the terminal says it is.
AgentPlace placeOf(pid_t first);

} // namespace FellowHook
