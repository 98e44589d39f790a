#include "core/agents/ClaudeRateLimits.h"

#include "core/base/JsonDepth.h"

#include <nlohmann/json.hpp>

namespace FellowCore {

namespace {

using Value = nlohmann::ordered_json;

Value parsed(std::string_view text) {
    if (text.size() > ClaudeRateLimits::maximumBytes || text.find('\0') != std::string_view::npos ||
        !isShallowJson(text)) {
        return {};
    }
    const Value value = Value::parse(text, nullptr, false);
    return value.is_discarded() ? Value() : value;
}

Value member(const Value& value, std::string_view key) {
    const auto found = value.is_object() ? value.find(key) : value.end();
    return value.is_object() && found != value.end() ? *found : Value();
}

std::string objectText(const Value& value) {
    return value.is_object() ? value.dump(-1, ' ', false, Value::error_handler_t::replace) : "null";
}

} // namespace

ClaudeRateLimits ClaudeRateLimits::parse(std::string_view input) {
    const Value document = parsed(input);
    const Value limits = member(document, "rate_limits");
    const Value name = member(member(document, "model"), "display_name");
    return {objectText(member(limits, "five_hour")), objectText(member(limits, "seven_day")),
            name.is_string() ? name.get<std::string>() : std::string()};
}

std::string ClaudeRateLimits::file(std::int64_t savedAt) const {
    return R"({"saved_at":)" + std::to_string(savedAt) + R"(,"five_hour":)" + fiveHour + R"(,"seven_day":)" +
           sevenDay + "}";
}

} // namespace FellowCore
