#include "core/agents/PumpAgentEvent.h"

#include "core/agents/PumpAgentFields.h"
#include "core/agents/PumpAgentLog.h"
#include "core/agents/PumpAgentTarget.h"
#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace FellowCore {

namespace {

std::optional<std::string> text(const Json& object, std::string_view key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? std::optional(found->get<std::string>())
                                                       : std::nullopt;
}

std::optional<std::string> validText(const Json& object, std::string_view key,
                                     bool (*isValid)(std::string_view)) {
    auto value = text(object, key);
    return value && isValid(*value) ? std::move(value) : std::nullopt;
}

std::optional<double> timestampIn(const Json& object) {
    const auto found = object.find(PumpAgentFields::timestampKey);
    if (found == object.end() || !found->is_number()) {
        return std::nullopt;
    }
    const auto seconds = found->get<double>();
    return std::isfinite(seconds) && seconds >= 0 ? std::optional(seconds) : std::nullopt;
}

std::optional<PumpAgentEvent> eventIn(const Json& object) {
    const auto agent = pumpProviderFromRawValue(text(object, PumpAgentFields::agentKey).value_or(""));
    const auto phase = pumpAgentPhaseFromRawValue(text(object, PumpAgentFields::eventKey).value_or(""));
    auto session = validText(object, PumpAgentFields::sessionKey, PumpAgentFields::isSessionID);
    const auto timestamp = timestampIn(object);
    if (!agent || !phase || !session || !timestamp) {
        return std::nullopt;
    }
    PumpAgentEvent event{.agent = *agent, .event = *phase, .sessionID = std::move(*session)};
    event.timestamp = *timestamp;
    event.cwd = validText(object, PumpAgentFields::cwdKey, PumpAgentTarget::validDirectoryMetadata);
    event.tty = PumpAgentTarget::parseTTY(text(object, PumpAgentFields::ttyKey).value_or(""));
    event.terminalBundleID =
        validText(object, PumpAgentFields::applicationKey, PumpAgentFields::isApplicationID);
    return event;
}

} // namespace

std::optional<PumpAgentEvent> PumpAgentEvent::parse(std::string_view line) {
    if (line.size() > PumpAgentFields::maximumLineBytes) {
        return std::nullopt;
    }
    try {
        const Json object = parseJson(line);
        return object.is_object() ? eventIn(object) : std::nullopt;
    } catch (const JsonError&) {
        return std::nullopt; // a line that is no JSON tells nothing about any session
    }
}

std::vector<PumpAgentEvent> PumpAgentEvent::parseLines(std::string_view text) {
    std::vector<PumpAgentEvent> events;
    PumpAgentLog::forEachLine(text, [&events](std::string_view line) {
        if (auto parsed = parse(line)) {
            events.push_back(std::move(*parsed));
        }
    });
    return events;
}

std::string PumpAgentEvent::key() const {
    return std::string(rawValue(agent)) + ":" + sessionID;
}

std::string PumpAgentEvent::phrase() const {
    std::string name(title(agent));
    switch (event) {
    case PumpAgentPhase::working:
        return name + " is working";
    case PumpAgentPhase::needsYou:
        return name + " needs you";
    case PumpAgentPhase::done:
        return name + " finished";
    }
    return name;
}

std::optional<std::string> PumpAgentEvent::project() const {
    if (!cwd) {
        return std::nullopt;
    }
    const auto last = cwd->find_last_not_of('/');
    if (last == std::string::npos) {
        return "/";
    }
    const auto slash = cwd->rfind('/', last);
    const auto first = slash == std::string::npos ? 0 : slash + 1;
    return cwd->substr(first, last + 1 - first);
}

std::optional<std::string> PumpAgentEvent::projectDirectory() const {
    return cwd && cwd->starts_with('/') ? cwd : std::nullopt;
}

PumpAgentEvent PumpAgentEvent::excludingProjectMetadata() const {
    PumpAgentEvent bare = *this;
    bare.cwd.reset();
    bare.tty.reset();
    return bare;
}

std::filesystem::path agentEventsFile(const SupportFolders& folders) {
    return folders.deskfellow() / PumpAgentLog::fileName;
}

std::vector<PumpAgentEvent> agentEventsInTail(std::string_view tail, bool isWholeFile) {
    if (isWholeFile) {
        return PumpAgentEvent::parseLines(tail);
    }
    const auto end = tail.find('\n');
    return end == std::string_view::npos ? std::vector<PumpAgentEvent>()
                                         : PumpAgentEvent::parseLines(tail.substr(end + 1));
}

} // namespace FellowCore
