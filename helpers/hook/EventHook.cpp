#include "helpers/hook/EventHook.h"

#include "core/agents/PumpAgentFields.h"
#include "core/agents/PumpAgentLog.h"
#include "core/agents/PumpHookInput.h"
#include "core/pump/PumpProvider.h"
#include "helpers/hook/EventLock.h"
#include "helpers/hook/Files.h"
#include "helpers/hook/ProcessTree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <ctime>

namespace FellowHook {

namespace {

using FellowCore::PumpAgentLog;
using FellowCore::PumpHookInput;

/// Less than the two seconds after which agents end their hooks, so that this one ends by itself.
constexpr double patienceSeconds = 1.8;

struct Arguments {
    FellowCore::PumpProvider agent;
    bool includeProject;
    std::string folder;
    pid_t first;
};

std::optional<Arguments> parsed(int count, char** values) {
    if (count != 4) {
        return std::nullopt;
    }
    const auto agent = FellowCore::pumpProviderFromRawValue(values[0]);
    const std::string_view pidText = values[3];
    pid_t first = 0;
    std::from_chars(pidText.data(), pidText.data() + pidText.size(), first);
    const std::string folder = values[2];
    if (!agent || !folder.starts_with('/')) {
        return std::nullopt;
    }
    return Arguments{*agent, std::string_view(values[1]) == "1", folder, first};
}

double now() {
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::optional<std::string> lineFor(const PumpHookInput& input, const Arguments& arguments) {
    const auto phase = input.phase(arguments.agent);
    if (!phase || !input.sessionID || !FellowCore::PumpAgentFields::isSessionID(*input.sessionID)) {
        return std::nullopt;
    }
    const AgentPlace place = placeOf(arguments.first);
    PumpAgentLog::Record record{.agent = rawValue(arguments.agent),
                                .event = *phase,
                                .session = *input.sessionID,
                                .timestamp = now(),
                                .application = place.application};
    if (arguments.includeProject) {
        record.cwd = input.projectDirectory();
        record.tty = place.terminal;
    }
    return PumpAgentLog::line(record);
}

/// Replaces the file whole, so that whoever reads it finds the old one or the new one. Nothing is flushed to
/// the device: what a loss of power takes are states that would have been stale by then.
void append(const EventLock& lock, const std::string& path, const std::string& line) {
    const auto existing = readFile(path, FellowCore::PumpAgentFields::maximumFileBytes);
    const std::string temporary = lock.temporaryFile();
    if (!writeNewFile(temporary, PumpAgentLog::appended(existing.value_or(""), line))) {
        return;
    }
    if (!lock.isStillHeld() || std::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
    }
}

} // namespace

void recordEvent(int count, char** values) {
    EventLock::endQuietlyAfter(patienceSeconds);
    ::umask(077);
    const std::string text = readUpTo(STDIN_FILENO, PumpHookInput::maximumBytes);
    if (text.size() > PumpHookInput::maximumBytes) {
        discardRest(STDIN_FILENO);
        return;
    }
    const auto arguments = parsed(count, values);
    const auto input = PumpHookInput::parse(text);
    const auto line = arguments && input ? lineFor(*input, *arguments) : std::nullopt;
    if (!line || !makeFolders(arguments->folder)) {
        return;
    }
    EventLock lock(arguments->folder);
    if (lock.acquire()) {
        append(lock, arguments->folder + "/" + std::string(PumpAgentLog::fileName), *line);
    }
}

} // namespace FellowHook
