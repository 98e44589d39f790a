#include "core/pump/PumpUsageJSON.h"

#include <bit>
#include <charconv>
#include <cmath>

namespace FellowCore::PumpUsageJSON {

namespace {

std::size_t indexOf(Field field) {
    return static_cast<std::size_t>(field);
}

std::uint32_t bitOf(Field field) {
    return std::uint32_t{1} << indexOf(field);
}

bool isNegativePower(std::string_view text) {
    const auto exponent = text.find_first_of("eE");
    return exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
}

std::optional<double> parsedDouble(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size()) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        // Too small and too large read alike. The few digits that are kept of a number can only be too small
        // when the exponent is negative.
        return isNegativePower(text) ? std::optional(0.0) : std::nullopt;
    }
    return error == std::errc{} && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<std::int64_t> parsedInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

const Value* numberAt(Field key, const Values& values) {
    const Value* const value = values.find(key);
    return value != nullptr && value->kind == Value::Kind::number ? value : nullptr;
}

} // namespace

std::string_view path(Field field) {
    static constexpr std::array<std::string_view, fieldCount> paths{
        "timestamp",
        "type",
        "message.id",
        "message.role",
        "message.usage.input_tokens",
        "message.usage.output_tokens",
        "message.usage.cache_creation_input_tokens",
        "message.usage.cache_read_input_tokens",
        "payload.type",
        "payload.plan_type",
        "plan_type",
        "payload.rate_limits.plan_type",
        "payload.rate_limits.primary.used_percent",
        "payload.rate_limits.primary.window_minutes",
        "payload.rate_limits.primary.resets_at",
    };
    return paths.at(indexOf(field));
}

const Value* Values::find(Field field) const {
    return (present_ & bitOf(field)) != 0 ? &values_[indexOf(field)] : nullptr;
}

const std::string* Values::string(Field field) const {
    const Value* const value = find(field);
    return value != nullptr && value->kind == Value::Kind::string ? &value->text : nullptr;
}

std::size_t Values::size() const {
    return static_cast<std::size_t>(std::popcount(present_));
}

void Values::set(Field field, Value::Kind kind, std::string_view text) {
    present_ |= bitOf(field);
    Value& value = values_[indexOf(field)];
    value.kind = kind;
    value.text.assign(text);
}

bool operator==(const Values& left, const Values& right) {
    if (left.present_ != right.present_) {
        return false;
    }
    for (std::size_t index = 0; index < fieldCount; ++index) {
        const auto field = static_cast<Field>(index);
        if (left.has(field) && left.values_[index] != right.values_[index]) {
            return false;
        }
    }
    return true;
}

std::optional<double> number(Field key, const Values& values) {
    const Value* const value = numberAt(key, values);
    return value != nullptr ? parsedDouble(value->text) : std::nullopt;
}

std::optional<std::int64_t> count(Field key, const Values& values) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const Value* const value = numberAt(key, values);
    if (value == nullptr) {
        return std::nullopt;
    }
    const auto whole = parsedInteger(value->text);
    if (whole && *whole >= 0) {
        return whole;
    }
    const auto real = parsedDouble(value->text);
    if (!real || *real < 0 || *real >= limit || std::trunc(*real) != *real) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*real);
}

} // namespace FellowCore::PumpUsageJSON
