#include "core/pump/PumpPreferences.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* plan = "plan";
constexpr const char* fiveHourBudget = "fiveHourBudget";
constexpr const char* usesCustomBudget = "usesCustomBudget";
} // namespace Key

} // namespace

PumpPreferences::PumpPreferences(PumpPlan chosen, std::optional<std::int64_t> budget)
    : plan(chosen), fiveHourBudget(budget.value_or(defaultFiveHourBudget(chosen))),
      usesCustomBudget(fiveHourBudget != defaultFiveHourBudget(chosen)) {}

PumpPreferences PumpPreferences::load(const Preferences& from) {
    const auto text = from.string(key);
    const auto stored = text ? decoded(*text) : std::nullopt;
    return stored ? stored->normalized() : PumpPreferences();
}

void PumpPreferences::save(Preferences& into) const {
    into.setString(key, encoded());
}

std::string PumpPreferences::encoded() const {
    return jsonText({{Key::plan, std::string(rawValue(plan))},
                     {Key::fiveHourBudget, fiveHourBudget},
                     {Key::usesCustomBudget, usesCustomBudget}},
                    JsonStyle::plain);
}

std::optional<PumpPreferences> PumpPreferences::decoded(std::string_view text) {
    try {
        const Json json = parseJson(text);
        const JsonFields fields(json);
        const auto plan = pumpPlanFromRawValue(fields.string(Key::plan));
        if (!plan) {
            return std::nullopt;
        }
        PumpPreferences preferences(*plan, fields.integer(Key::fiveHourBudget));
        preferences.usesCustomBudget = fields.boolean(Key::usesCustomBudget);
        return preferences;
    } catch (const JsonError&) {
        return std::nullopt; // what cannot be understood is as good as nothing stored
    }
}

void PumpPreferences::selectPlan(PumpPlan chosen) {
    plan = chosen;
    if (!usesCustomBudget) {
        resetToPlanDefault();
    }
}

void PumpPreferences::setCustomBudget(std::int64_t tokens) {
    fiveHourBudget = tokens;
    usesCustomBudget = true;
}

void PumpPreferences::resetToPlanDefault() {
    fiveHourBudget = defaultFiveHourBudget(plan);
    usesCustomBudget = false;
}

PumpPreferences PumpPreferences::normalized() const {
    PumpPreferences result = *this;
    if (fiveHourBudget < smallestBudget) {
        result.resetToPlanDefault();
    }
    result.fiveHourBudget = std::min(result.fiveHourBudget, largestBudget);
    return result;
}

} // namespace FellowCore
