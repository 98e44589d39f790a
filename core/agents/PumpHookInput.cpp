#include "core/agents/PumpHookInput.h"

#include "core/agents/PumpAgentTarget.h"

#include <nlohmann/json.hpp>

namespace FellowCore {

namespace {

/// Follows a document without building it: what a tool was given can be a megabyte, and none of it is wanted.
class FieldReader {
public:
    using Value = nlohmann::json;

    PumpHookInput fields;

    bool null() { return other(); }
    bool boolean(bool) { return other(); }
    bool number_integer(Value::number_integer_t) { return other(); }
    bool number_unsigned(Value::number_unsigned_t) { return other(); }
    bool number_float(Value::number_float_t, const std::string&) { return other(); }
    bool binary(Value::binary_t&) { return other(); }
    bool string(std::string& text) {
        if (depth_ == 1 && field_ != nullptr) {
            *field_ = std::move(text);
        }
        return depth_ > 0;
    }
    bool start_object(std::size_t) { return enter(); }
    bool key(std::string& name) {
        if (depth_ == 1) {
            field_ = fieldNamed(name);
        }
        return true;
    }
    bool end_object() { return leave(); }
    bool start_array(std::size_t) { return depth_ > 0 && enter(); }
    bool end_array() { return leave(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

private:
    std::optional<std::string>* fieldNamed(std::string_view name) {
        return name == "hook_event_name"     ? &fields.hookEventName
               : name == "notification_type" ? &fields.notificationType
               : name == "session_id"        ? &fields.sessionID
               : name == "cwd"               ? &fields.cwd
                                             : nullptr;
    }
    /// A value that is no string: as good as absent. Nothing but an object may stand at the top.
    bool other() {
        if (depth_ == 1 && field_ != nullptr) {
            field_->reset();
        }
        return depth_ > 0;
    }
    bool enter() {
        if (depth_ > 0) {
            other();
        }
        ++depth_;
        return true;
    }
    bool leave() {
        --depth_;
        return true;
    }

    int depth_ = 0;
    std::optional<std::string>* field_ = nullptr;
};

} // namespace

std::optional<PumpHookInput> PumpHookInput::parse(std::string_view text) {
    // The parser takes a zero byte for the end of its input and would not look at what follows.
    if (text.size() > maximumBytes || text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    FieldReader reader;
    return nlohmann::json::sax_parse(text, &reader) ? std::optional(std::move(reader.fields)) : std::nullopt;
}

std::optional<PumpAgentPhase> PumpHookInput::phase(PumpProvider agent) const {
    const bool isClaude = agent == PumpProvider::claude;
    if (hookEventName == "UserPromptSubmit") {
        return PumpAgentPhase::working;
    }
    if (hookEventName == "Stop" || hookEventName == "Interrupt") {
        return PumpAgentPhase::done;
    }
    if (!isClaude && hookEventName == "PermissionRequest") {
        return PumpAgentPhase::needsYou;
    }
    if (isClaude && hookEventName == "Notification") {
        // Only a request for permission blocks the agent; an idle prompt is "finished, waiting for you".
        return notificationType == "permission_prompt" ? std::optional(PumpAgentPhase::needsYou)
               : notificationType == "idle_prompt"     ? std::optional(PumpAgentPhase::done)
                                                       : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> PumpHookInput::projectDirectory() const {
    return cwd && cwd->starts_with('/') && PumpAgentTarget::validDirectoryMetadata(*cwd) ? cwd : std::nullopt;
}

} // namespace FellowCore
