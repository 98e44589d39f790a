#include "core/base/MemoryPreferences.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

namespace FellowCore {

namespace {

template <typename Wanted, typename Values>
std::optional<Wanted> valueOfType(const Values& values, std::string_view key) {
    const auto found = values.find(key);
    const Wanted* const value = found == values.end() ? nullptr : std::get_if<Wanted>(&found->second);
    return value ? std::optional(*value) : std::nullopt;
}

bool isListOfStrings(const Json& json) {
    return json.is_array() && std::ranges::all_of(json, [](const Json& item) { return item.is_string(); });
}

bool isInteger(const Json& json) {
    return json.is_number_integer() &&
           !(json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{INT64_MAX});
}

} // namespace

MemoryPreferences::MemoryPreferences() = default;
MemoryPreferences::~MemoryPreferences() = default;

std::optional<std::string> MemoryPreferences::string(std::string_view key) const {
    return valueOfType<std::string>(values_, key);
}

std::optional<bool> MemoryPreferences::boolean(std::string_view key) const {
    return valueOfType<bool>(values_, key);
}

std::optional<std::int64_t> MemoryPreferences::integer(std::string_view key) const {
    return valueOfType<std::int64_t>(values_, key);
}

std::optional<double> MemoryPreferences::number(std::string_view key) const {
    if (const auto whole = integer(key)) {
        return static_cast<double>(*whole);
    }
    return valueOfType<double>(values_, key);
}

std::optional<std::vector<std::string>> MemoryPreferences::strings(std::string_view key) const {
    return valueOfType<std::vector<std::string>>(values_, key);
}

bool MemoryPreferences::contains(std::string_view key) const {
    return values_.contains(key);
}

void MemoryPreferences::setString(std::string_view key, std::string_view value) {
    set(key, std::string(value));
}

void MemoryPreferences::setBoolean(std::string_view key, bool value) {
    set(key, value);
}

void MemoryPreferences::setInteger(std::string_view key, std::int64_t value) {
    set(key, value);
}

void MemoryPreferences::setNumber(std::string_view key, double value) {
    if (std::isfinite(value)) {
        set(key, value);
    }
}

void MemoryPreferences::setStrings(std::string_view key, const std::vector<std::string>& value) {
    set(key, value);
}

void MemoryPreferences::remove(std::string_view key) {
    const auto found = values_.find(key);
    if (found == values_.end()) {
        return;
    }
    values_.erase(found);
    if (onChange) {
        onChange();
    }
}

void MemoryPreferences::set(std::string_view key, Value value) {
    const auto found = values_.find(key);
    if (found != values_.end() && found->second == value) {
        return;
    }
    values_.insert_or_assign(std::string(key), std::move(value));
    if (onChange) {
        onChange();
    }
}

std::string MemoryPreferences::document() const {
    Json object = Json::object();
    for (const auto& [key, value] : values_) {
        Json& field = object[key];
        std::visit(
            [&field](const auto& held) {
                if constexpr (std::is_same_v<std::decay_t<decltype(held)>, Foreign>) {
                    field = Json::parse(held.json);
                } else {
                    field = held;
                }
            },
            value);
    }
    return jsonText(object, JsonStyle::pretty);
}

void MemoryPreferences::load(std::string_view document) {
    const auto kept = [](const Json& json) -> Value {
        if (json.is_boolean()) {
            return json.get<bool>();
        }
        if (isInteger(json)) {
            return json.get<std::int64_t>();
        }
        if (json.is_number_float()) {
            return json.get<double>();
        }
        if (json.is_string()) {
            return json.get<std::string>();
        }
        if (isListOfStrings(json)) {
            return json.get<std::vector<std::string>>();
        }
        return Foreign{jsonText(json, JsonStyle::plain)};
    };

    const Json object = parseJson(document);
    if (!object.is_object()) {
        throw JsonError(JsonError::Kind::wrongType, {}, "should be an object");
    }
    std::map<std::string, Value, std::less<>> values;
    for (const auto& [key, json] : object.items()) {
        values.emplace(key, kept(json));
    }
    values_ = std::move(values);
}

} // namespace FellowCore
