#include "core/art/CharacterBuildPolicy.h"

#include "core/art/BuiltinCharacters.h"
#include "core/base/Json.h"

#include <nlohmann/json.hpp>

namespace FellowCore {

namespace {

void take(const JsonFields& fields, const char* key, bool& flag) {
    try {
        flag = fields.boolean(key);
    } catch (const JsonError&) {
        // A flag that is missing or no boolean keeps its default.
    }
}

} // namespace

CharacterBuildPolicy CharacterBuildPolicy::fromBuildJson(std::string_view text) {
    CharacterBuildPolicy policy;
    try {
        const Json document = parseJson(text);
        const JsonFields fields(document);
        take(fields, internKey, policy.includeIntern);
        take(fields, noriKey, policy.includeNori);
        take(fields, customerInternKey, policy.includeCustomerIntern);
    } catch (const JsonError&) {
        // An installation without a usable build.json is a normal one: all defaults.
    }
    return policy;
}

bool CharacterBuildPolicy::includes(std::string_view id) const {
    if (id == BuiltinCharacters::intern().id) {
        return includeIntern;
    }
    if (id == BuiltinCharacters::nori().id) {
        return includeNori;
    }
    return id != BuiltinCharacters::customerIntern().id || includeCustomerIntern;
}

std::string CharacterBuildPolicy::restoredID(const std::optional<std::string>& saved,
                                             const std::set<std::string>& available) const {
    const bool usable = saved && includes(*saved) && available.contains(*saved);
    return usable ? *saved : BuiltinCharacters::batti().id;
}

} // namespace FellowCore
