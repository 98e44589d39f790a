#include "helpers/hook/ProcessTree.h"

#include "core/agents/LinuxHostApplication.h"
#include "core/agents/PumpAgentTarget.h"
#include "helpers/hook/Files.h"

#include <unistd.h>

#include <charconv>
#include <cinttypes>
#include <cstdlib>
#include <ctime>

namespace FellowHook {

namespace {

namespace Host = FellowCore::LinuxHostApplication;

constexpr std::size_t procLimit = 65536;

std::string environmentText(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

double sinceBoot() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// /proc says its files are empty, so `readFile` reads them by what comes.
std::string procFile(pid_t pid, const char* name) {
    return readFile("/proc/" + std::to_string(pid) + "/" + name, procLimit).value_or("");
}

std::optional<std::string> fromControlGroups(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        // "0::/user.slice/...": hierarchy, controllers, group (man 7 cgroups).
        const auto second = line.find(':', line.find(':') + 1);
        if (second != std::string_view::npos) {
            if (auto id = Host::fromControlGroup(line.substr(second + 1))) {
                return id;
            }
        }
    }
    return std::nullopt;
}

/// The desktop tells a program which desktop file it was started by; what that program starts inherits the
/// word, so it counts only for the process that it was meant for.
std::optional<std::string> startedByDesktop(pid_t pid) {
    if (environmentText("GIO_LAUNCHED_DESKTOP_FILE_PID") != std::to_string(pid)) {
        return std::nullopt;
    }
    return Host::fromDesktopFile(environmentText("GIO_LAUNCHED_DESKTOP_FILE"));
}

} // namespace

std::optional<Process> processWith(pid_t pid) {
    const std::string text = procFile(pid, "stat");
    const auto open = text.find('(');
    const auto close = text.rfind(')'); // the name itself may hold parentheses
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    Process process;
    process.name = text.substr(open + 1, close - open - 1);
    unsigned long long started = 0;
    // state ppid pgrp session tty_nr, and starttime as field 22 (man 5 proc).
    const int found =
        std::sscanf(text.c_str() + close + 1,
                    " %c %d %*d %*d %d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d %*d %*d %llu",
                    &process.state, &process.parent, &process.terminal, &started);
    if (found != 4) {
        return std::nullopt;
    }
    process.age = sinceBoot() - static_cast<double>(started) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    return process;
}

AgentPlace placeOf(pid_t first) {
    constexpr int maximumDepth = 16;
    AgentPlace place;
    pid_t pid = first;
    for (int depth = 0; depth < maximumDepth && pid > 1; ++depth) {
        const auto process = processWith(pid);
        if (!process) {
            break;
        }
        if (!place.terminal) {
            const auto name = Host::terminalName(process->terminal);
            place.terminal = name ? FellowCore::PumpAgentTarget::parseTTY(*name) : std::nullopt;
        }
        if (!place.application) {
            place.application = Host::fromProcessName(process->name);
        }
        if (!place.application) {
            place.application = startedByDesktop(pid);
        }
        pid = process->parent;
    }
    if (!place.application) {
        place.application = fromControlGroups(procFile(::getpid(), "cgroup"));
    }
    if (!place.application) {
        place.application = Host::fromTerminalProgram(environmentText("TERM_PROGRAM"));
    }
    if (place.application) {
        place.application = FellowCore::PumpAgentTarget::canonicalBundleID(*place.application);
    }
    return place;
}

} // namespace FellowHook
