#include "platform/TerminalPlace.h"

#include "platform/linux/KonsoleTabs.h"
#include "platform/linux/ProcessStatus.h"
#include "platform/linux/TmuxPanes.h"

#include <charconv>

namespace Platform {
namespace {

constexpr int deepestNesting = 4; ///< of a multiplexer in another
constexpr int longestAncestry = 32;

/// The process that the terminal was opened for, or the oldest one on it when that has ended.
std::optional<long> firstOn(const std::string& device) {
    std::optional<long> oldest;
    for (const long pid : allProcesses()) {
        const auto status = processStatus(pid);
        if (!status || !isTerminal(status->terminal, device)) {
            continue;
        }
        if (status->session == pid) {
            return pid;
        }
        oldest = oldest.value_or(pid);
    }
    return oldest;
}

std::vector<long> ancestry(long pid) {
    std::vector<long> processes;
    for (int depth = 0; depth < longestAncestry && pid > 1; ++depth) {
        const auto status = processStatus(pid);
        if (!status) {
            break;
        }
        processes.push_back(pid);
        pid = status->parent;
    }
    return processes;
}

/// Most terminals tell the programs in them which window they are in.
std::optional<unsigned long long> toldWindow(long pid) {
    const std::string text = startVariable(pid, "WINDOWID");
    unsigned long long window = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), window);
    return read.ec == std::errc() && window != 0 ? std::optional(window) : std::nullopt;
}

std::optional<TerminalPlace> placeOf(long first) {
    TerminalPlace place{ancestry(first), toldWindow(first)};
    for (const long pid : place.processes) {
        if (const auto status = processStatus(pid); status && status->name == "konsole") {
            if (const auto window = revealKonsoleTab(pid, first)) {
                place.window = window;
            }
        }
    }
    return place;
}

} // namespace

std::optional<TerminalPlace> revealTerminal(const std::string& device) {
    std::string inner = device;
    for (int depth = 0; depth < deepestNesting; ++depth) {
        const auto first = firstOn(inner);
        if (!first) {
            return std::nullopt;
        }
        const std::string server = startVariable(*first, "TMUX");
        // A shell started from a pane inherits the variable, so a terminal that is no pane may have it too.
        const std::string outer = server.empty() ? std::string() : revealTmuxPane(server, inner);
        if (outer.empty()) {
            return placeOf(*first);
        }
        inner = outer;
    }
    return std::nullopt;
}

} // namespace Platform
