#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What is kept of one line of an agent's session log (JSON Lines), of which only a few small values are of
/// interest. `PumpUsageJSON::Stream` takes them out of the line.
namespace FellowCore::PumpUsageJSON {

/// The paths whose scalar values are kept; `path` gives the text.
enum class Field : std::uint8_t {
    timestamp,
    type,
    messageID,
    messageRole,
    inputTokens,
    outputTokens,
    cacheCreationInputTokens,
    cacheReadInputTokens,
    payloadType,
    payloadPlanType,
    planType,
    rateLimitsPlanType,
    primaryUsedPercent,
    primaryWindowMinutes,
    primaryResetsAt,
};

inline constexpr std::size_t fieldCount = 15;

/// The keys from the root down, joined by full stops: "message.usage.input_tokens".
std::string_view path(Field field);

/// A kept scalar.
struct Value {
    enum class Kind : std::uint8_t {
        string, ///< `text` is the decoded string
        number, ///< `text` is the literal as it stood in the line
    };

    Kind kind = Kind::string;
    std::string text;

    friend bool operator==(const Value&, const Value&) = default;
};

/// The kept values of one line. Clearing keeps the memory, so that a scan of many lines allocates little.
class Values {
public:
    /// Null when the line had no such value; valid until the values change.
    const Value* find(Field field) const;
    /// The text of a string; null when the value is absent or a number.
    const std::string* string(Field field) const;
    bool has(Field field) const { return find(field) != nullptr; }
    bool empty() const { return present_ == 0; }
    std::size_t size() const;

    void set(Field field, Value::Kind kind, std::string_view text);
    void clear() { present_ = 0; }

    friend bool operator==(const Values& left, const Values& right);

private:
    std::uint32_t present_ = 0; ///< one bit for each field
    std::array<Value, fieldCount> values_;
};

/// A number that is finite as a double. A string of digits is not a number.
std::optional<double> number(Field key, const Values& values);

/// A whole number from 0 to 2^63 - 1, however it is written: "1e3" is 1000 and "12.0" is 12; "-5" and "1.5"
/// are nothing.
std::optional<std::int64_t> count(Field key, const Values& values);

} // namespace FellowCore::PumpUsageJSON
