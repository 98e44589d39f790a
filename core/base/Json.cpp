#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace FellowCore {

namespace {

[[noreturn]] void throwWrongType(std::string field, std::string_view wanted, const Json& found) {
    throw JsonError(JsonError::Kind::wrongType, std::move(field),
                    "should be " + std::string(wanted) + " but is " + found.type_name());
}

} // namespace

JsonError::JsonError(Kind kind, std::string field, const std::string& reason)
    : std::runtime_error((field.empty() ? "the document" : field) + ": " + reason), kind_(kind),
      field_(std::move(field)) {}

Json parseJson(std::string_view text) {
    if (!isShallowJson(text)) {
        throw JsonError(JsonError::Kind::notJson, {}, "nested too deeply");
    }
    // The parser takes a zero byte for the end of its input and would not look at what follows.
    if (text.find('\0') != std::string_view::npos) {
        throw JsonError(JsonError::Kind::notJson, {}, "contains a zero byte");
    }
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        // The parser's own sentence quotes the text, however long and whatever it holds.
        throw JsonError(JsonError::Kind::notJson, {}, "not JSON at byte " + std::to_string(error.byte));
    } catch (const Json::out_of_range&) {
        throw JsonError(JsonError::Kind::notJson, {}, "holds a number too large for a double");
    }
}

JsonFields::JsonFields(const Json& value, std::string path) : value_(&value), path_(std::move(path)) {
    if (!value.is_object()) {
        throwWrongType(path_, "an object", value);
    }
}

bool JsonFields::has(std::string_view key) const {
    const auto found = value_->find(key);
    return found != value_->end() && !found->is_null();
}

const Json& JsonFields::value(std::string_view key) const {
    const auto found = value_->find(key);
    if (found == value_->end() || found->is_null()) {
        throw JsonError(JsonError::Kind::missing, pathOf(key), "is missing");
    }
    return *found;
}

std::string JsonFields::string(std::string_view key) const {
    const Json& found = value(key);
    if (!found.is_string()) {
        throwWrongType(pathOf(key), "a string", found);
    }
    return found.get<std::string>();
}

bool JsonFields::boolean(std::string_view key) const {
    const Json& found = value(key);
    if (!found.is_boolean()) {
        throwWrongType(pathOf(key), "true or false", found);
    }
    return found.get<bool>();
}

std::int64_t JsonFields::integer(std::string_view key) const {
    constexpr double limit = 9223372036854775808.0; // 2^63, the first double that no longer fits
    const double whole = number(key);
    const Json& found = value(key);
    if (found.is_number_float() ? !(whole >= -limit && whole < limit)
                                : found.is_number_unsigned() && found.get<std::uint64_t>() > INT64_MAX) {
        throw JsonError(JsonError::Kind::outOfRange, pathOf(key), "is beyond 64 bits");
    }
    if (std::trunc(whole) != whole) {
        throw JsonError(JsonError::Kind::wrongType, pathOf(key), "should be a whole number");
    }
    return found.is_number_float() ? static_cast<std::int64_t>(whole) : found.get<std::int64_t>();
}

double JsonFields::number(std::string_view key) const {
    const Json& found = value(key);
    if (!found.is_number()) {
        throwWrongType(pathOf(key), "a number", found);
    }
    const auto number = found.get<double>();
    if (!std::isfinite(number)) {
        throw JsonError(JsonError::Kind::outOfRange, pathOf(key), "is not finite");
    }
    return number;
}

JsonFields JsonFields::object(std::string_view key) const {
    return JsonFields(value(key), pathOf(key));
}

std::vector<std::string> JsonFields::strings(std::string_view key) const {
    const Json& found = value(key);
    if (!found.is_array()) {
        throwWrongType(pathOf(key), "a list of strings", found);
    }
    std::vector<std::string> strings;
    strings.reserve(found.size());
    for (const Json& item : found) {
        if (!item.is_string()) {
            throwWrongType(pathOf(key) + "[" + std::to_string(strings.size()) + "]", "a string", item);
        }
        strings.push_back(item.get<std::string>());
    }
    return strings;
}

std::string JsonFields::pathOf(std::string_view key) const {
    return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
}

std::string jsonText(const Json& value, JsonStyle style) {
    constexpr auto onBadBytes = Json::error_handler_t::replace;
    return style == JsonStyle::plain ? value.dump(-1, ' ', false, onBadBytes)
                                     : value.dump(2, ' ', false, onBadBytes) + "\n";
}

} // namespace FellowCore
