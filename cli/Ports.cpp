#include "cli/Ports.h"

#include "core/base/Text.h"
#include "core/devwatch/DevWatchKind.h"
#include "core/devwatch/DevWatchPresentation.h"
#include "core/devwatch/DevWatchSampler.h"
#include "platform/Processes.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace Fellow {

namespace {

using FellowCore::DevWatchKind;
using FellowCore::DevWatchListener;

struct Options {
    bool json = false;
    std::string home;
    std::optional<std::string> complaint;
};

Options readOptions(Arguments arguments) {
    constexpr std::string_view homeOption = "--home";
    Options options;
    const char* const home = std::getenv("HOME");
    options.home = home == nullptr ? "" : home;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string word(arguments[index]);
        if (word == "--json") {
            options.json = true;
        } else if (word == homeOption && index + 1 < arguments.size()) {
            options.home = arguments[++index];
        } else if (word.starts_with(std::string(homeOption) + "=")) {
            options.home = word.substr(homeOption.size() + 1);
        } else {
            const char* const reason = word == homeOption ? " wants a folder." : " is no option here.";
            options.complaint = FellowCore::singleLine(word) + reason;
            break;
        }
    }
    return options;
}

/// What a listener's line tells, each a clean text, empty where there is nothing to tell.
struct Line {
    std::string port;
    std::string pid;
    std::string name;
    std::string kind;
    std::string project;
    std::string url;

    std::array<const std::string*, 6> cells() const { return {&port, &pid, &name, &kind, &project, &url}; }
};

Line lineOf(const DevWatchListener& listener, const std::string& home) {
    const auto& process = listener.process;
    return {std::to_string(listener.port),
            std::to_string(process.identity.pid),
            FellowCore::singleLine(process.name),
            FellowCore::DevWatchPresentation::title(DevWatchKind::classify(process)),
            FellowCore::DevWatchPresentation::project(process.workingDirectory, home).value_or(""),
            DevWatchKind::httpURL(listener).value_or("")};
}

void printTable(const std::vector<DevWatchListener>& listeners, const std::string& home) {
    std::vector<Line> lines{{"PORT", "PID", "NAME", "KIND", "PROJECT", "URL"}};
    for (const DevWatchListener& listener : listeners) {
        lines.push_back(lineOf(listener, home));
    }
    std::array<std::size_t, 6> widths{};
    for (const Line& line : lines) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], FellowCore::characterCount(*line.cells()[column]));
        }
    }
    for (const Line& line : lines) {
        std::string text;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            const std::string& cell = *line.cells()[column];
            text += cell + std::string(widths[column] - FellowCore::characterCount(cell) + 2, ' ');
        }
        std::cout << text.substr(0, text.find_last_not_of(' ') + 1) << '\n';
    }
}

void printJson(const std::vector<DevWatchListener>& listeners, const std::string& home) {
    auto list = nlohmann::ordered_json::array();
    for (const DevWatchListener& listener : listeners) {
        const auto& process = listener.process;
        const DevWatchKind kind = DevWatchKind::classify(process);
        nlohmann::ordered_json entry{{"port", listener.port},
                                     {"pid", process.identity.pid},
                                     {"name", FellowCore::wellFormed(process.name)},
                                     {"kind", FellowCore::rawValue(kind.kind)},
                                     {"executable", FellowCore::wellFormed(process.executablePath)},
                                     {"folder", FellowCore::wellFormed(process.workingDirectory)}};
        if (!kind.application.empty()) {
            entry["application"] = FellowCore::wellFormed(kind.application);
        }
        if (const auto project = FellowCore::DevWatchPresentation::project(process.workingDirectory, home)) {
            entry["project"] = *project;
        }
        if (const auto url = DevWatchKind::httpURL(listener)) {
            entry["url"] = *url;
        }
        list.push_back(std::move(entry));
    }
    std::cout << list.dump(2) << '\n';
}

ExitStatus run(Arguments arguments) {
    const Options options = readOptions(arguments);
    if (options.complaint) {
        return misused(ports, *options.complaint);
    }
    const auto system = Platform::processOperations();
    const auto snapshot = FellowCore::DevWatchSampler(*system, Platform::ownSafetyPolicy(*system)).sample();
    if (!snapshot.enumerationSucceeded) {
        std::cerr << emptyTitle(FellowCore::DevWatchProcessListState::unavailable) << ".\n";
        return ExitStatus::refused;
    }
    if (options.json) {
        printJson(snapshot.listeners, options.home);
    } else if (snapshot.listeners.empty()) {
        std::cout << "Nothing of yours listens on a port.\n";
    } else {
        printTable(snapshot.listeners, options.home);
    }
    return ExitStatus::good;
}

} // namespace

const Command ports{
    "ports",
    "ports [--json]",
    "list your processes that listen on a TCP port",
    "Each line has the port, the process, its kind, the project folder it works in and where to look at\n"
    "it in a browser. With --json each listener is an object of a list: port, pid, name, kind\n"
    "(devServer, database, tool, appHelper, system), executable, folder, and, where there is one,\n"
    "application, project and url.\n\n"
    "--home DIR takes another folder for the home folder, which is nobody's project.\n\n"
    "Exit status: 0 done, 1 the process list cannot be read, 2 the command line is wrong.\n",
    run,
};

} // namespace Fellow
