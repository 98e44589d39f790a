#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// The user's settings: a typed key and value store. A value of the wrong type reads as absent; each owner
/// forces what it reads into its own bounds. Used from one thread.
class Preferences {
public:
    virtual ~Preferences() = default;

    virtual std::optional<std::string> string(std::string_view key) const = 0;
    virtual std::optional<bool> boolean(std::string_view key) const = 0;
    virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
    /// A whole number reads as a number too. Never non-finite.
    virtual std::optional<double> number(std::string_view key) const = 0;
    virtual std::optional<std::vector<std::string>> strings(std::string_view key) const = 0;
    /// Whether the key holds anything, of whatever type.
    virtual bool contains(std::string_view key) const = 0;

    virtual void setString(std::string_view key, std::string_view value) = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    /// A number that is not finite is not stored; the old value stays.
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setStrings(std::string_view key, const std::vector<std::string>& value) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace FellowCore
