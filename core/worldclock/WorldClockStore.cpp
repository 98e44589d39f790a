#include "core/worldclock/WorldClockStore.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace FellowCore {

namespace {

constexpr const char* homeKey = "homeTimeZoneIdentifier";
constexpr const char* citiesKey = "cityIdentifiers";
constexpr const char* pinsKey = "pinnedTimeZoneIdentifiers";
constexpr const char* defaultsKey = "defaultFacesApplied";

std::vector<std::string> texts(const Json& object, const char* key) {
    std::vector<std::string> found;
    if (const auto list = object.find(key); list != object.end() && list->is_array()) {
        for (const Json& member : *list) {
            if (member.is_string()) {
                found.push_back(member.get<std::string>());
            }
        }
    }
    return found;
}

} // namespace

WorldClockStore::WorldClockStore(Preferences& defaults, const WorldClockCatalog& catalog)
    : defaults_(defaults), catalog_(catalog) {}

WorldClockState WorldClockStore::load(std::string_view systemTimeZone) const {
    WorldClockState state;
    if (const auto text = defaults_.string(key); text && text->size() <= mostBytes) {
        try {
            state = decoded(*text);
        } catch (const JsonError&) {
            // What cannot be understood is like what was never stored: the tower starts anew.
        }
    }
    state.normalize(catalog_, systemTimeZone);
    return state;
}

void WorldClockStore::save(WorldClockState state, std::string_view systemTimeZone) {
    state.normalize(catalog_, systemTimeZone);
    defaults_.setString(key, encoded(state));
}

std::string WorldClockStore::encoded(const WorldClockState& state) {
    Json object{{citiesKey, state.cityIdentifiers},
                {pinsKey, state.pinnedTimeZoneIdentifiers},
                {defaultsKey, state.defaultFacesApplied}};
    if (state.homeTimeZoneIdentifier) {
        object[homeKey] = *state.homeTimeZoneIdentifier;
    }
    return jsonText(object, JsonStyle::plain);
}

WorldClockState WorldClockStore::decoded(std::string_view text) {
    const Json object = parseJson(text);
    if (!object.is_object()) {
        throw JsonError(JsonError::Kind::wrongType, "", "is no object");
    }
    WorldClockState state;
    if (const auto home = object.find(homeKey); home != object.end() && home->is_string()) {
        state.homeTimeZoneIdentifier = home->get<std::string>();
    }
    state.cityIdentifiers = texts(object, citiesKey);
    state.pinnedTimeZoneIdentifiers = texts(object, pinsKey);
    const auto applied = object.find(defaultsKey);
    state.defaultFacesApplied = applied != object.end() && applied->is_boolean() && applied->get<bool>();
    return state;
}

} // namespace FellowCore
