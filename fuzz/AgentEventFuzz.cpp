#include "core/agents/ClaudeRateLimits.h"
#include "core/agents/LinuxHostApplication.h"
#include "core/agents/PumpAgentFields.h"
#include "core/agents/PumpAgentLog.h"
#include "core/agents/PumpAgentState.h"
#include "core/agents/PumpAgentTarget.h"
#include "core/agents/PumpHookInput.h"
#include "core/base/Json.h"
#include "fuzz/Require.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

// What must hold of every event, whatever line it came from.
void requireSane(const PumpAgentEvent& event) {
    require(PumpAgentFields::isSessionID(event.sessionID) && event.timestamp >= 0);
    require(!event.cwd || PumpAgentTarget::validDirectoryMetadata(*event.cwd));
    require(!event.tty || PumpAgentTarget::parseTTY(*event.tty) == event.tty);
    require(!event.terminalBundleID || PumpAgentFields::isApplicationID(*event.terminalBundleID));
    require(!event.phrase().empty() && (!event.project() || !event.project()->empty()));
    if (const auto target = PumpAgentTarget::choose(event.terminalBundleID, event.tty, event.cwd)) {
        const auto script = target->appleScript();
        require(!script || script->find(target->tty) != std::string::npos);
        require(target->kind != PumpAgentTarget::Kind::project || target->path.starts_with('/'));
    }
}

// What the hook makes of an input is a line that is read back as it was meant.
void checkInput(std::string_view text) {
    const auto input = PumpHookInput::parse(text);
    for (const PumpProvider agent : allPumpProviders) {
        const auto phase = input ? input->phase(agent) : std::nullopt;
        if (!phase || !input->sessionID || !PumpAgentFields::isSessionID(*input->sessionID)) {
            continue;
        }
        const auto line = PumpAgentLog::line({.agent = rawValue(agent),
                                              .event = *phase,
                                              .session = *input->sessionID,
                                              .timestamp = 1.5,
                                              .cwd = input->projectDirectory()});
        if (line) {
            const auto event = PumpAgentEvent::parse(*line);
            require(event && event->sessionID == *input->sessionID &&
                    event->cwd == input->projectDirectory());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto events = PumpAgentEvent::parseLines(text);
    for (const PumpAgentEvent& event : events) {
        requireSane(event);
    }
    const Instant now = events.empty() ? Instant{} : Instant::fromUnix(events.front().timestamp);
    PumpAgentState state;
    state.ingest(events, now);
    require(state.ingest(events, now).empty() || events.size() > 200);
    require(state.sessions(now).size() <= state.latest.size());
    const std::string log = PumpAgentLog::appended(text, "{}");
    require(log.ends_with("{}\n") && log.find("\n\n") == std::string::npos);
    checkInput(text);
    // The file is JSON whatever the status line was told.
    require(Json::accept(ClaudeRateLimits::parse(text).file(1)));
    const auto application = LinuxHostApplication::fromControlGroup(text);
    require(!application || PumpAgentFields::isApplicationID(*application));
    return 0;
}
