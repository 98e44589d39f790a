#include "cli/Sessions.h"

#include "cli/MomentOptions.h"
#include "core/agents/PumpAgentConnector.h"
#include "core/agents/PumpAgentState.h"
#include "core/agents/PumpAgentTail.h"
#include "core/base/Json.h"
#include "core/base/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iostream>
#include <vector>

namespace Fellow {

namespace {

using FellowCore::Instant;
using FellowCore::Json;
using FellowCore::PumpAgentEvent;
using FellowCore::PumpProvider;

struct Seen {
    std::vector<PumpAgentEvent> sessions;
    bool isAnyConnected = false;
};

Seen lookAt(const MomentOptions& options) {
    FellowCore::PosixFileOperations files;
    FellowCore::PumpAgentState state;
    state.ingest(readAgentEvents(files, agentEventsFile(*options.folders)), options.at);
    Seen seen;
    for (const PumpProvider agent : FellowCore::allPumpProviders) {
        if (FellowCore::PumpAgentConnector(files, *options.folders, agent, "/").connected()) {
            seen.isAnyConnected = true;
        } else {
            state.clear(agent);
        }
    }
    seen.sessions = state.sessions(options.at);
    return seen;
}

Json sessionJson(const PumpAgentEvent& session, Instant now) {
    const auto orNull = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
    return {{"agent", rawValue(session.agent)},
            {"phase", rawValue(session.event)},
            {"session_id", session.sessionID},
            {"project", orNull(session.project())},
            {"cwd", orNull(session.cwd)},
            {"tty", orNull(session.tty)},
            {"application", orNull(session.terminalBundleID)},
            {"age_seconds", std::max(0.0, session.age(now))},
            {"at", jsonDate(Instant::fromUnix(session.timestamp), FellowCore::JsonDateForm::iso8601)}};
}

void printJson(const Seen& seen, Instant now) {
    Json list = Json::array();
    for (const PumpAgentEvent& session : seen.sessions) {
        list.push_back(sessionJson(session, now));
    }
    std::cout << list.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

std::string padded(std::string text, std::size_t width) {
    text.append(width - std::min(width, text.size()), ' ');
    return text;
}

std::string ageText(double seconds) {
    const auto minutes = static_cast<long long>(std::max(0.0, seconds) / 60);
    return minutes < 60 ? std::to_string(minutes) + " min" : std::to_string(minutes / 60) + " h";
}

void printText(const Seen& seen, Instant now) {
    if (seen.sessions.empty()) {
        std::cout << (seen.isAnyConnected ? "No sessions right now\n"
                                          : "No agent is connected; Pump's settings connect them.\n");
    }
    for (const PumpAgentEvent& session : seen.sessions) {
        std::cout << padded(std::string(rawValue(session.event)), 11)
                  << padded(std::string(title(session.agent)), 8) << padded(ageText(session.age(now)), 8)
                  << FellowCore::singleLine(session.project().value_or("-")) << '\n';
    }
}

ExitStatus run(Arguments arguments) {
    const MomentOptions options = readMomentOptions(arguments);
    if (options.complaint) {
        return misused(sessions, *options.complaint);
    }
    const Seen seen = lookAt(options);
    if (options.json) {
        printJson(seen, options.at);
    } else {
        printText(seen, options.at);
    }
    return ExitStatus::good;
}

} // namespace

const Command sessions{
    "sessions",
    "sessions [--json]",
    "list the coding agents' live sessions",
    "One line for each: what it is doing, the agent, how long ago it said so, and its project when that may\n"
    "be known. The most urgent stands first. With --json the same as an array, with times in UTC.\n\n"
    "--home DIR looks beneath another home folder, and --at ISO8601 takes another moment for now.\n\n"
    "Exit status: 0 done, 2 the command line is wrong.\n",
    run,
};

} // namespace Fellow
