#include "core/agents/PumpHookSettings.h"

#include "core/agents/SettingsDocument.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace FellowCore {

namespace {

constexpr std::string_view hooksKey = "hooks"; ///< of the settings, and of a group in them
constexpr std::string_view matcherKey = "matcher";
constexpr std::string_view typeKey = "type";
constexpr std::string_view commandKey = "command";
constexpr std::string_view timeoutKey = "timeout";
constexpr std::string_view asyncKey = "async";

constexpr std::string_view promptEvent = "UserPromptSubmit";
constexpr std::string_view notificationEvent = "Notification";
constexpr std::string_view notifications = "^(permission_prompt|idle_prompt)$";
constexpr int timeoutSeconds = 2;

constexpr std::array<std::string_view, 3> claudeEvents{promptEvent, notificationEvent, "Stop"};
constexpr std::array<std::string_view, 4> codexEvents{promptEvent, "PermissionRequest", "Stop", "Interrupt"};

const char* message(PumpHookSettings::Failure::Case failure) {
    using Case = PumpHookSettings::Failure::Case;
    switch (failure) {
    case Case::invalid:
        return "Agent settings or hooks are invalid. They were left unchanged.";
    case Case::missingBackup:
        return "Pump's hook backup is missing. Restore the hooks manually before reconnecting.";
    case Case::changed:
        return "Agent settings changed while Pump was connecting. Try again; your edits were preserved.";
    case Case::editedHelper:
        return "Pump's hook helper was edited. Move it aside before reconnecting; your edits were preserved.";
    }
    return "";
}

bool isArrayOfObjects(const Json& value) {
    return value.is_array() && std::ranges::all_of(value, [](const Json& item) { return item.is_object(); });
}

bool isGroup(const Json& group) {
    const auto hooks = group.find(hooksKey);
    return hooks == group.end() || isArrayOfObjects(*hooks);
}

bool hasWellFormedHooks(const Json& settings) {
    const auto hooks = settings.find(hooksKey);
    if (hooks == settings.end()) {
        return true;
    }
    return hooks->is_object() && std::ranges::all_of(*hooks, [](const Json& groups) {
               return isArrayOfObjects(groups) && std::ranges::all_of(groups, isGroup);
           });
}

Json groupFor(std::string_view event, std::string_view command) {
    Json hook = {{typeKey, "command"}, {commandKey, command}, {timeoutKey, timeoutSeconds}};
    if (event == promptEvent) {
        hook[asyncKey] = true; // so that a prompt does not wait for it
    }
    Json group = {{hooksKey, Json::array({std::move(hook)})}};
    if (event == notificationEvent) {
        group[matcherKey] = notifications;
    }
    return group;
}

bool runs(const Json& hook, std::string_view command) {
    const auto found = hook.find(commandKey);
    return found != hook.end() && *found == command;
}

/// Takes the command's hooks out of a group; whether that left it with none.
bool isEmptiedOf(Json& group, std::string_view command) {
    const auto hooks = group.find(hooksKey);
    if (hooks == group.end()) {
        return false;
    }
    const auto isOurs = [command](const Json& hook) { return runs(hook, command); };
    auto& list = hooks->get_ref<Json::array_t&>();
    return std::erase_if(list, isOurs) > 0 && list.empty();
}

/// Takes the command out of every event, and events with it that only held it and that the original had not.
void removeCommand(Json& events, const Json& originalEvents, std::string_view command) {
    for (auto event = events.begin(); event != events.end();) {
        auto& groups = event.value().get_ref<Json::array_t&>();
        const auto removed =
            std::erase_if(groups, [command](Json& group) { return isEmptiedOf(group, command); });
        const bool isLeftEmpty = removed > 0 && groups.empty() && !originalEvents.contains(event.key());
        event = isLeftEmpty ? events.erase(event) : std::next(event);
    }
}

/// The settings without the command, or nothing when they never held it.
std::optional<Json> without(const Json& settings, std::string_view command, const Json& original) {
    Json rest = settings;
    const auto hooks = rest.find(hooksKey);
    if (hooks == rest.end()) {
        return std::nullopt;
    }
    const bool hadHooks = original.contains(hooksKey);
    removeCommand(*hooks, hadHooks ? original.at(hooksKey) : Json::object(), command);
    if (rest == settings) {
        return std::nullopt;
    }
    if (hooks->empty() && !hadHooks) {
        rest.erase(hooks);
    }
    return rest;
}

} // namespace

PumpHookSettings::Failure::Failure(Case failure) : std::runtime_error(message(failure)), failure_(failure) {}

std::span<const std::string_view> PumpHookSettings::events(PumpProvider agent) {
    return agent == PumpProvider::claude ? std::span<const std::string_view>(claudeEvents) : codexEvents;
}

Json PumpHookSettings::object(std::string_view data) {
    try {
        Json settings = SettingsDocument::parsed(data);
        if (hasWellFormedHooks(settings)) {
            return settings;
        }
    } catch (const JsonError&) {
        // The user is told that the settings are invalid; where, their editor shows better.
    }
    throw Failure(Failure::Case::invalid);
}

std::string PumpHookSettings::encode(const Json& object) {
    return SettingsDocument::text(object);
}

std::string PumpHookSettings::merge(std::string_view data, PumpProvider agent, std::string_view command) {
    Json settings = object(data);
    Json& hooks = settings[hooksKey];
    for (const std::string_view event : events(agent)) {
        hooks[event].push_back(groupFor(event, command));
    }
    return encode(settings);
}

bool PumpHookSettings::holdsCommand(std::string_view data, std::string_view command) {
    const Json settings = object(data);
    const auto hooks = settings.find(hooksKey);
    if (hooks == settings.end()) {
        return false;
    }
    const auto groupRuns = [command](const Json& group) {
        const auto list = group.find(hooksKey);
        return list != group.end() &&
               std::ranges::any_of(*list, [command](const Json& hook) { return runs(hook, command); });
    };
    return std::ranges::any_of(*hooks,
                               [&](const Json& groups) { return std::ranges::any_of(groups, groupRuns); });
}

std::string PumpHookSettings::restore(std::string_view current, std::string_view original,
                                      std::string_view installed, std::string_view command) {
    if (current == installed) {
        return std::string(original);
    }
    const Json settings = object(current);
    const Json before = object(original);
    const auto rest = without(settings, command, before);
    if (rest.value_or(settings) == before) {
        return std::string(original);
    }
    return rest ? encode(*rest) : std::string(current);
}

} // namespace FellowCore
